#pragma once

#include "MediaFile.h"

#include <QAbstractListModel>
#include <QSet>
#include <QtQml/qqmlregistration.h>

/// The media of the page on screen, as rows with the one role "item". An item that stays on the page keeps
/// its row, so that the cell that shows it keeps its state. The row of one that went is given to a new item,
/// because making a cell takes longer than changing one. Main thread.
class MediaPageModel : public QAbstractListModel {
    Q_OBJECT
    QML_ANONYMOUS

public:
    enum Role { ItemRole = Qt::UserRole };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    const QList<MediaFile> &items() const { return m_items; }
    /// Becomes the given list by updating, removing, moving and inserting rows; items are told apart by path.
    void setItems(const QList<MediaFile> &items);

private:
    void reuseRows(const QList<MediaFile> &items, const QSet<FileURL> &kept);
    void removeAllBut(const QSet<FileURL> &kept);
    void place(const MediaFile &item, int row);

    QList<MediaFile> m_items;
};
