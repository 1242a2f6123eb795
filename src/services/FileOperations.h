#pragma once

#include "FileOperation.h"

#include <QFuture>

#include <functional>

/// Work on the user's files, batch by batch, each on one background task and one file at a time, in order. A
/// batch whose future is cancelled stops soon; what waited for the disk then stays where it was.
namespace FileOperations {

/// Called after each file with how many are done, from the batch's thread.
using Progress = std::function<void(qsizetype done, qsizetype total)>;

/// The files that were moved to the Trash, in input order.
QFuture<QList<FileURL>> trash(const QList<FileURL> &files, const Progress &progress);

QFuture<FileTransferResult> transfer(const QList<FileURL> &sources, const FileURL &folder,
                                     FileOperationKind kind, const Progress &progress);

} // namespace FileOperations
