#include "FileOperations.h"

#include "BackgroundTask.h"

namespace FileOperations {

QFuture<QList<FileURL>> trash(const QList<FileURL> &, const Progress &) {
    return BackgroundTask::run<QList<FileURL>>(
        [](QPromise<QList<FileURL>> &promise) { promise.addResult(QList<FileURL>()); });
}

QFuture<FileTransferResult> transfer(const QList<FileURL> &sources, const FileURL &, FileOperationKind,
                                     const Progress &) {
    return BackgroundTask::run<FileTransferResult>([sources](QPromise<FileTransferResult> &promise) {
        promise.addResult(FileTransferResult{.sources = {}, .destinations = {}, .failures = sources});
    });
}

} // namespace FileOperations
