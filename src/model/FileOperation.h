#pragma once

#include "FileURL.h"

#include <QList>

enum class FileOperationKind { copy, move };

/// The outcome of one batch of copies or moves.
struct FileTransferResult {
    /// Transferred, in the order of processing.
    QList<FileURL> sources;
    /// Where each of them was written, index for index.
    QList<FileURL> destinations;
    QList<FileURL> failures;
};
