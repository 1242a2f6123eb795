#include "MediaPageModel.h"

#include <QSet>

int MediaPageModel::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : int(m_items.size());
}

QVariant MediaPageModel::data(const QModelIndex &index, int role) const {
    if (role != ItemRole || !checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    return QVariant::fromValue(m_items[index.row()]);
}

QHash<int, QByteArray> MediaPageModel::roleNames() const {
    return {{ItemRole, "item"}};
}

void MediaPageModel::setItems(const QList<MediaFile> &items) {
    removeAllBut(items);
    for (int row = 0; row < items.size(); ++row) {
        place(items[row], row);
    }
}

void MediaPageModel::removeAllBut(const QList<MediaFile> &items) {
    QSet<FileURL> kept;
    for (const MediaFile &item : items) {
        kept.insert(item.url);
    }
    for (int end = int(m_items.size()); end > 0;) {
        int begin = end;
        while (begin > 0 && !kept.contains(m_items[begin - 1].url)) {
            --begin;
        }
        if (begin == end) {
            --end;
            continue;
        }
        beginRemoveRows({}, begin, end - 1);
        m_items.remove(begin, end - begin);
        endRemoveRows();
        end = begin;
    }
}

/// Brings the item to the row, where the rows before it are in place already.
void MediaPageModel::place(const MediaFile &item, int row) {
    int from = row;
    while (from < m_items.size() && m_items[from].url != item.url) {
        ++from;
    }
    if (from == m_items.size()) {
        beginInsertRows({}, row, row);
        m_items.insert(row, item);
        endInsertRows();
        return;
    }
    if (from != row) {
        beginMoveRows({}, from, from, {}, row);
        m_items.move(from, row);
        endMoveRows();
    }
    if (m_items[row] != item) {
        m_items[row] = item;
        Q_EMIT dataChanged(index(row), index(row));
    }
}
