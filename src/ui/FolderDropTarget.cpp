#include "FolderDropTarget.h"

#include <QMimeData>

FolderDropTarget::FolderDropTarget(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemAcceptsDrops);
}

std::optional<FileURL> FolderDropTarget::firstFile(const QMimeData &data) {
    // Read as bytes: names that are not UTF-8 would not survive a QUrl.
    for (const QByteArray &line : data.data(QStringLiteral("text/uri-list")).split('\n')) {
        const QByteArray uri = line.trimmed();
        if (uri.isEmpty() || uri.startsWith('#')) {
            continue;
        }
        return uri.startsWith("file:") ? FileURL::fromArgument(uri, QByteArray("/")) : std::nullopt;
    }
    return std::nullopt;
}

bool FolderDropTarget::leavesFilesAlone(QDropEvent &event) {
    for (const Qt::DropAction action : {Qt::CopyAction, Qt::LinkAction}) {
        if (event.possibleActions().testFlag(action)) {
            event.setDropAction(action);
            return true;
        }
    }
    return false;
}

void FolderDropTarget::dragEnterEvent(QDragEnterEvent *event) {
    setTargeted(event->mimeData()->hasUrls() && leavesFilesAlone(*event));
    event->setAccepted(m_targeted);
}

void FolderDropTarget::dragMoveEvent(QDragMoveEvent *event) {
    // What is not accepted over and over cannot be dropped.
    event->setAccepted(leavesFilesAlone(*event) && m_targeted);
}

void FolderDropTarget::dragLeaveEvent(QDragLeaveEvent *) {
    setTargeted(false);
}

void FolderDropTarget::dropEvent(QDropEvent *event) {
    setTargeted(false);
    const std::optional<FileURL> url = firstFile(*event->mimeData());
    event->setAccepted(leavesFilesAlone(*event) && url);
    if (event->isAccepted()) {
        Q_EMIT dropped(*url);
    }
}

void FolderDropTarget::setTargeted(bool targeted) {
    if (m_targeted == targeted) {
        return;
    }
    m_targeted = targeted;
    Q_EMIT isTargetedChanged();
}
