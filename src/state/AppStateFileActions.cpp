// Trash, copy and move of the flagged files.

#include "AppState.h"

#include "AlertPresenter.h"
#include "BackgroundTask.h"
#include "FolderChooser.h"
#include "WhenFinished.h"

#include <QPointer>
#include <QSet>

namespace {

/// "1 item", "2 items".
QString counted(qsizetype count, const QString &noun) {
    return QStringLiteral("%1 %2%3").arg(QString::number(count), noun,
                                         count == 1 ? QString() : QStringLiteral("s"));
}

QString countedItems(qsizetype count) {
    return counted(count, QStringLiteral("item"));
}

QList<FileURL> urlsOf(const QList<MediaFile> &items) {
    QList<FileURL> urls;
    urls.reserve(items.size());
    for (const MediaFile &item : items) {
        urls.append(item.url);
    }
    return urls;
}

} // namespace

BatchProgress AppState::showProgress() {
    assignOperationProgress(0.0);
    return BatchProgress([self = QPointer(this)](double fraction) {
        if (self) {
            self->assignOperationProgress(fraction);
        }
    });
}

void AppState::withFlaggedFiles(const FilesAction &act) {
    if (m_asking || m_flags.isEmpty()) {
        return;
    }
    m_asking = true;
    const auto collected = BackgroundTask::run<QList<FileURL>>(
        [folder = snapshot()](auto &promise) { promise.addResult(urlsOf(flaggedItems(folder))); });
    whenFinished(this, collected, [this, act](const QFuture<QList<FileURL>> &finished) {
        m_asking = false;
        const QList<FileURL> files = finishedResultOr(finished, QList<FileURL>());
        if (!files.isEmpty()) {
            act(files);
        }
    });
}

void AppState::trashFlagged() {
    if (m_services.alerts != nullptr) {
        withFlaggedFiles([this](const QList<FileURL> &files) { askToTrash(files); });
    }
}

void AppState::askToTrash(const QList<FileURL> &files) {
    m_asking = true;
    const auto answer = m_services.alerts->present(
        {.messageText = QStringLiteral("Move %1 to Trash?").arg(countedItems(files.size())),
         .informativeText = QStringLiteral("The files can be recovered from the Trash."),
         .buttons = {QStringLiteral("Move to Trash"), QStringLiteral("Cancel")},
         .destructive = true});
    whenFinished(this, answer, [this, files](const QFuture<int> &finished) {
        m_asking = false;
        if (finishedResultOr(finished, -1) == 0) {
            startTrash(files);
        }
    });
}

void AppState::keepBatch(const QFuture<void> &batch) {
    m_batches.removeIf([](const QFuture<void> &earlier) { return earlier.isFinished(); });
    m_batches.append(batch);
}

void AppState::startTrash(const QList<FileURL> &files) {
    const BatchProgress progress = showProgress();
    const QFuture<QList<FileURL>> batch = m_services.trash(files, progress.reporter());
    keepBatch(QFuture<void>(batch));
    whenFinished(this, batch, [this, progress](const QFuture<QList<FileURL>> &finished) {
        progress.end();
        const QList<FileURL> trashed = finishedResultOr(finished, QList<FileURL>());
        removeFromBrowser(trashed, [this, count = trashed.size()] {
            assignOperationProgress(std::nullopt);
            assignStatusMessage(QStringLiteral("Moved %1 to Trash").arg(countedItems(count)));
        });
    });
}

void AppState::performFileOperation(FileOperationKind kind) {
    if (m_services.chooser != nullptr) {
        withFlaggedFiles([this, kind](const QList<FileURL> &files) { askWhere(files, kind); });
    }
}

void AppState::askWhere(const QList<FileURL> &files, FileOperationKind kind) {
    m_asking = true;
    const bool copies = kind == FileOperationKind::copy;
    const auto answer = m_services.chooser->choose(
        copies ? QStringLiteral("Copy flagged files to") : QStringLiteral("Move flagged files to"),
        copies ? QStringLiteral("Copy Here") : QStringLiteral("Move Here"));
    whenFinished(this, answer, [this, kind, files](const QFuture<std::optional<FileURL>> &finished) {
        m_asking = false;
        const auto folder = finishedResultOr(finished, std::nullopt);
        if (folder) {
            startTransfer(files, *folder, kind);
        }
    });
}

void AppState::startTransfer(const QList<FileURL> &files, const FileURL &folder, FileOperationKind kind) {
    const BatchProgress progress = showProgress();
    assignStatusMessage(kind == FileOperationKind::copy ? QStringLiteral("Copying\u2026")
                                                        : QStringLiteral("Moving\u2026"));
    const QFuture<FileTransferResult> batch = m_services.transfer(files, folder, kind, progress.reporter());
    keepBatch(QFuture<void>(batch));
    whenFinished(this, batch, [this, kind, files, progress](const QFuture<FileTransferResult> &finished) {
        progress.end();
        const FileTransferResult none{.sources = {}, .destinations = {}, .failures = files};
        const FileTransferResult result = finishedResultOr(finished, none);
        const auto tell = [this, result, kind] { tellTransferred(result, kind); };
        kind == FileOperationKind::copy ? tell() : removeFromBrowser(result.sources, tell);
    });
}

void AppState::tellTransferred(const FileTransferResult &result, FileOperationKind kind) {
    const bool copied = kind == FileOperationKind::copy;
    assignOperationProgress(std::nullopt);
    assignStatusMessage((copied ? QStringLiteral("Copied %1") : QStringLiteral("Moved %1"))
                            .arg(countedItems(result.sources.size())));
    if (!result.failures.isEmpty()) {
        assignErrorMessage(QStringLiteral("%1 could not be %2.")
                               .arg(counted(result.failures.size(), QStringLiteral("file")),
                                    copied ? QStringLiteral("copied") : QStringLiteral("moved")));
    }
}

void AppState::removeFromBrowser(const QList<FileURL> &files, const std::function<void()> &finished) {
    const auto rest =
        BackgroundTask::run<FolderSnapshot>([folder = snapshot(), files](auto &promise) mutable {
            const QSet<FileURL> gone(files.begin(), files.end());
            keepIf(folder.videos, gone, false);
            keepIf(folder.photos, gone, false);
            folder.flags.subtract(gone);
            folder.hiddenVideos.subtract(gone);
            promise.addResult(folder);
        });
    whenFinished(this, rest, [=, this, revision = m_revision](const QFuture<FolderSnapshot> &made) {
        if (revision != m_revision) {
            // The user was faster: what was made is of the past.
            removeFromBrowser(files, finished);
            return;
        }
        const FolderSnapshot folder = finishedResultOr(made, snapshot());
        assignVideos(folder.videos);
        assignPhotos(folder.photos);
        assignFlags(folder.flags);
        assignHiddenVideos(folder.hiddenVideos);
        setPage(0);
        finished();
    });
}
