#pragma once

#include "FileURL.h"

#include <QFuture>

namespace DirectoryTest {

/// Whether the URL, its links resolved, is a folder. Asked on a background task, since a file system may take
/// long to answer; false when it cannot be told.
QFuture<bool> isDirectory(const FileURL &url);

} // namespace DirectoryTest
