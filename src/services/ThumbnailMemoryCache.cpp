#include "ThumbnailMemoryCache.h"

bool ThumbnailMemoryCache::contains(const QByteArray &path) const {
    const std::scoped_lock lock(m_mutex);
    return m_byPath.contains(path);
}

QImage ThumbnailMemoryCache::image(const QByteArray &path) {
    const std::scoped_lock lock(m_mutex);
    const auto found = m_byPath.constFind(path);
    if (found == m_byPath.constEnd()) {
        return {};
    }
    m_entries.splice(m_entries.begin(), m_entries, *found);
    return m_entries.front().image;
}

void ThumbnailMemoryCache::insert(const QByteArray &path, const QImage &image) {
    const std::scoped_lock lock(m_mutex);
    remove(path);
    m_entries.push_front({path, image});
    m_byPath.insert(path, m_entries.begin());
    m_bytes += image.sizeInBytes();
    while (m_byPath.size() > m_maximumCount || m_bytes > m_maximumBytes) {
        remove(QByteArray(m_entries.back().path));
    }
}

qsizetype ThumbnailMemoryCache::count() const {
    const std::scoped_lock lock(m_mutex);
    return m_byPath.size();
}

qint64 ThumbnailMemoryCache::bytes() const {
    const std::scoped_lock lock(m_mutex);
    return m_bytes;
}

void ThumbnailMemoryCache::remove(const QByteArray &path) {
    const auto found = m_byPath.find(path);
    if (found == m_byPath.end()) {
        return;
    }
    const Entries::iterator entry = *found;
    m_bytes -= entry->image.sizeInBytes();
    m_byPath.erase(found);
    m_entries.erase(entry);
}
