#pragma once

#include "ScanResult.h"

#include <QFuture>

namespace FolderScanner {

/// Scans the folder in the background. The future fails with a FileSystemError (platform) whose message is
/// fit for the user; cancelling it makes the scan stop at the next entry without a result.
QFuture<ScanResult> scan(const FileURL &folder);

} // namespace FolderScanner
