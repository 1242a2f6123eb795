#pragma once

#include "FileURL.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

class QMimeData;

/// Takes files and folders dragged from other programs; of several the first.
class FolderDropTarget : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// A drag that can be dropped is over the item.
    Q_PROPERTY(bool isTargeted READ isTargeted NOTIFY isTargetedChanged)

public:
    explicit FolderDropTarget(QQuickItem *parent = nullptr);

    bool isTargeted() const { return m_targeted; }

    /// The first dragged file's location, with its bytes as the other program gave them; none when the list
    /// is empty or its first entry lies elsewhere than on this machine.
    static std::optional<FileURL> firstFile(const QMimeData &data);

Q_SIGNALS:
    void isTargetedChanged();
    void dropped(const FileURL &url);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    /// Asks for an action after which the other program keeps its files; false when it offers none.
    static bool leavesFilesAlone(QDropEvent &event);
    void setTargeted(bool targeted);

    bool m_targeted = false;
};
