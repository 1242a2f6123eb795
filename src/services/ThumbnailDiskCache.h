#pragma once

#include "FileDescriptor.h"
#include "FileURL.h"

#include <QImage>

/// Thumbnails that survive the program: one JPEG per media path in a directory of the user's own (0700, files
/// 0600), which several programs may share. Entries appear whole or not at all. Every failure is silent: what
/// cannot be read is not there, and what cannot be written is not kept. A link in the directory's place or
/// another user's directory is not used.
///
/// Holds nothing but the directory's name; copies are cheap, and any thread may use its own.
class ThumbnailDiskCache {
public:
    /// 400 MiB.
    static constexpr qint64 byteLimit = 419'430'400;

    explicit ThumbnailDiskCache(FileURL directory) : m_directory(std::move(directory)) {}

    /// "Mosa/Thumbnails" in the user's cache directory of the XDG Base Directory standard.
    static FileURL defaultDirectory();
    /// The entry's file name: SHA-256 of the path's bytes in hexadecimal digits, and ".jpg".
    static QByteArray cacheName(const FileURL &media);

    /// Makes the directory, removes what writers left behind when they died, and deletes the oldest entries
    /// until at most maximumBytes are left.
    void prepare(qint64 maximumBytes = byteLimit) const;
    /// Null when there is no entry or it is damaged.
    QImage read(const FileURL &media) const;
    /// The picture must be opaque, as JPEG knows no alpha.
    void write(const FileURL &media, const QImage &image) const;

private:
    FileDescriptor open() const;
    FileDescriptor create() const;

    FileURL m_directory;
};
