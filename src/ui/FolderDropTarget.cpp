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

void FolderDropTarget::dragEnterEvent(QDragEnterEvent *event) {
    const bool acceptable = event->mimeData()->hasUrls();
    event->setAccepted(acceptable);
    setTargeted(acceptable);
}

void FolderDropTarget::dragLeaveEvent(QDragLeaveEvent *) {
    setTargeted(false);
}

void FolderDropTarget::dropEvent(QDropEvent *event) {
    setTargeted(false);
    const std::optional<FileURL> url = firstFile(*event->mimeData());
    if (!url) {
        event->ignore();
        return;
    }
    // The other program keeps its file, whatever it offered.
    event->setDropAction(Qt::CopyAction);
    event->accept();
    Q_EMIT dropped(*url);
}

void FolderDropTarget::setTargeted(bool targeted) {
    if (m_targeted == targeted) {
        return;
    }
    m_targeted = targeted;
    Q_EMIT isTargetedChanged();
}
