#pragma once

#include <QByteArray>

/// The most bytes that a file name may have on Linux.
constexpr qsizetype longestFileName = 255;

/// The n-th name to try for a file: the name itself for 1, then "clip 2.mp4", "clip 3.mp4", … for "clip.mp4".
/// Only what follows the last dot counts as the extension; a leading or a last dot begins none.
///
/// Never longer than `limit` bytes: what stands before the number is cut between two UTF-8 characters (bytes
/// that are no UTF-8 count as characters of their own) and the extension is kept, unless nothing else would
/// be left of the name.
QByteArray numberedName(const QByteArray &name, qint64 n, qsizetype limit = longestFileName);
