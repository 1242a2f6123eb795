#pragma once

#include <QByteArray>

#include <system_error>

/// Gives a file a new name, in the same or another directory of its file system, without ever replacing what
/// has that name already (EEXIST), even when it appears at the last moment.
///
/// Where the file system cannot do that in one step, the file gets its second name before it loses the first;
/// where it cannot do that either the call fails.
std::error_code renameWithoutReplacing(int fromDirectory, const QByteArray &from, int toDirectory,
                                       const QByteArray &to);

/// Tries numberedName(wanted, 1), 2, 3, … until one is free. The name taken is in `taken`.
std::error_code renameToFreeName(int fromDirectory, const QByteArray &from, int toDirectory,
                                 const QByteArray &wanted, QByteArray &taken);

/// A name for a passing hidden file of ours that nothing else has: ".mosa-<16 hex digits>.part".
QByteArray passingName();
