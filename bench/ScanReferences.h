#pragma once

#include "FileURL.h"

#include <QList>
#include <QSize>

/// The fastest plain uses of the libraries for the parts of a scan: what a program would do that did nothing
/// else. No error handling beyond passing over, no hostile files.
namespace ScanReferences {

struct Totals {
    qint64 files = 0;
    qint64 bytes = 0;

    friend bool operator==(const Totals &, const Totals &) = default;
};

/// readdir and one statx each, by a recursion over descriptors.
Totals walk(const FileURL &folder);
/// The same with std::filesystem.
Totals walkWithStandardLibrary(const FileURL &folder);
/// "find -printf '%s %T@\n'" as another process, its lines counted and summed.
Totals walkWithFind(const FileURL &folder);

/// QImageReader::size() for what Qt reads, libheif's primary image for the rest.
QSize photoSize(const FileURL &file);
/// avformat_open_input() and the first video stream's size, turned by its display matrix.
QSize videoSize(const FileURL &file);
/// The same after avformat_find_stream_info().
QSize analysedVideoSize(const FileURL &file);

} // namespace ScanReferences
