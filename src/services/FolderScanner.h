#pragma once

#include "ScanResult.h"

#include <QByteArray>
#include <QFuture>
#include <QSet>

/// Finds the media that belong to a folder's grid and the subfolders that get a card.
///
/// Media are files of at least 50,000 bytes with a known extension. Subfolders that hold both kinds, at any
/// depth, become cards; the media of all others join the folder's own. Hidden entries and links are passed
/// over.
namespace FolderScanner {

/// Lower case, without the dot.
const QSet<QByteArray> &videoExtensions();
const QSet<QByteArray> &photoExtensions();
/// Folders that are never searched, at any depth; lower case.
const QSet<QString> &ignoredNames();

/// Scans the folder in the background. The future fails with a FileSystemError (platform) whose message is
/// fit for the user; cancelling it makes the scan stop at the next entry without a result.
QFuture<ScanResult> scan(const FileURL &folder);

} // namespace FolderScanner
