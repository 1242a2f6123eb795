#include "MediaPageModel.h"

#include <algorithm>

namespace {

QSet<FileURL> urlsOf(const QList<MediaFile> &items) {
    QSet<FileURL> urls;
    urls.reserve(items.size());
    for (const MediaFile &item : items) {
        urls.insert(item.url);
    }
    return urls;
}

} // namespace

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
    const QSet<FileURL> kept = urlsOf(items);
    reuseRows(items, kept);
    removeAllBut(kept);
    for (int row = 0; row < items.size(); ++row) {
        place(items[row], row);
    }
}

/// Puts new items where items that are to go stand, if the new ones belong just there.
void MediaPageModel::reuseRows(const QList<MediaFile> &items, const QSet<FileURL> &kept) {
    const QSet<FileURL> present = urlsOf(m_items);
    const qsizetype both = std::min(items.size(), m_items.size());
    for (int row = 0; row < both; ++row) {
        if (!kept.contains(m_items[row].url) && !present.contains(items[row].url)) {
            m_items[row] = items[row];
            Q_EMIT dataChanged(index(row), index(row));
        }
    }
}

void MediaPageModel::removeAllBut(const QSet<FileURL> &kept) {
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
