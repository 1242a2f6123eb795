#pragma once

#include "FileDescriptor.h"

#include <QByteArray>

/// Keeps the directory of the thumbnails small.
namespace ThumbnailCacheTrimmer {

/// Entries in the making are hidden files of this prefix.
inline const QByteArray temporaryPrefix = QByteArrayLiteral(".writing-");

/// Deletes entries that have been in the making for an hour, then the oldest regular, visible files until the
/// rest amounts to at most maximumBytes; equal dates in the order of the listing. Errors are passed over: a
/// file that cannot be deleted keeps counting.
void pruneCache(FileDescriptor directory, qint64 maximumBytes);

} // namespace ThumbnailCacheTrimmer
