#include "FileOperations.h"

#include "BackgroundTask.h"
#include "FileTransfer.h"
#include "Trash.h"

namespace FileOperations {

namespace {

void report(const Progress &progress, qsizetype done, qsizetype total) {
    if (progress) {
        progress(done, total);
    }
}

} // namespace

QFuture<QList<FileURL>> trash(const QList<FileURL> &files, const Progress &progress) {
    return BackgroundTask::run<QList<FileURL>>([files, progress](QPromise<QList<FileURL>> &promise) {
        QList<FileURL> trashed;
        qsizetype done = 0;
        Trash trash([&](const Trash::Outcome &outcome) {
            if (!outcome.error) {
                trashed.append(outcome.file);
            }
            report(progress, ++done, files.size());
        });
        for (const FileURL &file : files) {
            if (promise.isCanceled()) {
                break;
            }
            trash.add(file);
        }
        if (!promise.isCanceled()) {
            trash.flush();
        }
        promise.addResult(trashed);
    });
}

QFuture<FileTransferResult> transfer(const QList<FileURL> &sources, const FileURL &folder,
                                     FileOperationKind kind, const Progress &progress) {
    return BackgroundTask::run<FileTransferResult>(
        [sources, folder, kind, progress](QPromise<FileTransferResult> &promise) {
            FileTransferResult result;
            qsizetype done = 0;
            const auto finished = [&](const FileTransfer::Outcome &outcome) {
                if (outcome.error) {
                    result.failures.append(outcome.source);
                } else {
                    result.sources.append(outcome.source);
                    result.destinations.append(outcome.destination);
                }
                report(progress, ++done, sources.size());
            };
            FileTransfer transfer(folder, kind, finished, [&promise] { return promise.isCanceled(); });
            for (const FileURL &source : sources) {
                if (promise.isCanceled()) {
                    break;
                }
                transfer.add(source);
            }
            transfer.flush();
            promise.addResult(result);
        });
}

} // namespace FileOperations
