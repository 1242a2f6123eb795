#pragma once

#include <QHash>
#include <QImage>

#include <list>
#include <mutex>

/// Decoded thumbnails by the bytes of their file's path; the least recently used leave first. Any thread.
class ThumbnailMemoryCache {
public:
    static constexpr qsizetype countLimit = 300;
    /// About 115 pictures of 720 × 480: the page on screen and its two neighbours.
    static constexpr qint64 byteLimit = 160LL * 1024 * 1024;

    explicit ThumbnailMemoryCache(qsizetype maximumCount = countLimit, qint64 maximumBytes = byteLimit)
        : m_maximumCount(maximumCount), m_maximumBytes(maximumBytes) {}

    bool contains(const QByteArray &path) const;
    /// Null when there is none.
    QImage image(const QByteArray &path);
    /// Takes the place of an older picture of the same file. A picture beyond the limit is not kept.
    void insert(const QByteArray &path, const QImage &image);

    qsizetype count() const;
    qint64 bytes() const;

private:
    struct Entry {
        QByteArray path;
        QImage image;
    };
    using Entries = std::list<Entry>;

    void remove(const QByteArray &path);

    mutable std::mutex m_mutex;
    qsizetype m_maximumCount;
    qint64 m_maximumBytes;
    qint64 m_bytes = 0;
    /// The most recently used first.
    Entries m_entries;
    QHash<QByteArray, Entries::iterator> m_byPath;
};
