// Trash, copy and move of the flagged files.

#include "AppState.h"

#include "AlertPresenter.h"
#include "FolderChooser.h"
#include "WhenFinished.h"

#include <QPointer>

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

QSet<QString> pathsOf(const QList<FileURL> &urls) {
    QSet<QString> paths;
    paths.reserve(urls.size());
    for (const FileURL &url : urls) {
        paths.insert(url.path());
    }
    return paths;
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

void AppState::trashFlagged() {
    const QList<MediaFile> items = flaggedItems();
    if (items.isEmpty() || m_asking || m_services.alerts == nullptr) {
        return;
    }
    m_asking = true;
    const auto answer = m_services.alerts->present(
        {.messageText = QStringLiteral("Move %1 to Trash?").arg(countedItems(items.size())),
         .informativeText = QStringLiteral("The files can be recovered from the Trash."),
         .buttons = {QStringLiteral("Move to Trash"), QStringLiteral("Cancel")},
         .destructive = true});
    whenFinished(this, answer, [this, files = urlsOf(items)](const QFuture<int> &finished) {
        m_asking = false;
        if (finishedResultOr(finished, -1) == 0) {
            startTrash(files);
        }
    });
}

void AppState::startTrash(const QList<FileURL> &files) {
    const BatchProgress progress = showProgress();
    whenFinished(this, m_services.trash(files, progress.reporter()),
                 [this, progress](const QFuture<QList<FileURL>> &finished) {
                     progress.end();
                     const QList<FileURL> trashed = finishedResultOr(finished, QList<FileURL>());
                     removeFromBrowser(pathsOf(trashed));
                     assignOperationProgress(std::nullopt);
                     assignStatusMessage(
                         QStringLiteral("Moved %1 to Trash").arg(countedItems(trashed.size())));
                 });
}

void AppState::performFileOperation(FileOperationKind kind) {
    const QList<MediaFile> items = flaggedItems();
    if (items.isEmpty() || m_asking || m_services.chooser == nullptr) {
        return;
    }
    m_asking = true;
    const bool copies = kind == FileOperationKind::copy;
    const auto answer = m_services.chooser->choose(
        copies ? QStringLiteral("Copy flagged files to") : QStringLiteral("Move flagged files to"),
        copies ? QStringLiteral("Copy Here") : QStringLiteral("Move Here"));
    whenFinished(this, answer,
                 [this, kind, files = urlsOf(items)](const QFuture<std::optional<FileURL>> &finished) {
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
    whenFinished(this, m_services.transfer(files, folder, kind, progress.reporter()),
                 [this, kind, files, progress](const QFuture<FileTransferResult> &finished) {
                     progress.end();
                     const FileTransferResult none{.sources = {}, .destinations = {}, .failures = files};
                     finishTransfer(finishedResultOr(finished, none), kind);
                 });
}

void AppState::finishTransfer(const FileTransferResult &result, FileOperationKind kind) {
    const bool copied = kind == FileOperationKind::copy;
    if (!copied) {
        removeFromBrowser(pathsOf(result.sources));
    }
    assignOperationProgress(std::nullopt);
    assignStatusMessage((copied ? QStringLiteral("Copied %1") : QStringLiteral("Moved %1"))
                            .arg(countedItems(result.sources.size())));
    if (!result.failures.isEmpty()) {
        assignErrorMessage(QStringLiteral("%1 could not be %2.")
                               .arg(counted(result.failures.size(), QStringLiteral("file")),
                                    copied ? QStringLiteral("copied") : QStringLiteral("moved")));
    }
}

void AppState::removeFromBrowser(const QSet<QString> &paths) {
    const auto remaining = [&paths](QList<MediaFile> files) {
        keepIf(files, paths, false);
        return files;
    };
    assignVideos(remaining(m_videos));
    assignPhotos(remaining(m_photos));
    assignFlags(QSet<QString>(m_flags).subtract(paths));
    assignHiddenVideos(QSet<QString>(m_hiddenVideos).subtract(paths));
    setPage(0);
}
