#pragma once

#include "FileURL.h"

#include <QFuture>
#include <QList>

/// Folders within a folder, for choosing one. Both run on a background task and fail with a FileSystemError.
namespace Subfolders {

/// In the order of names, hidden ones included; links to folders count as folders. Cancelling the future
/// makes the listing stop.
QFuture<QList<FileURL>> list(const FileURL &folder);

/// Makes a new, empty folder and answers with it.
QFuture<FileURL> create(const FileURL &parent, const QByteArray &name);

} // namespace Subfolders
