#include "ThumbnailDiskCache.h"

#include "FileContent.h"
#include "PictureCodec.h"
#include "ThumbnailCacheTrimmer.h"

#include <QCryptographicHash>
#include <QFile>
#include <QStandardPaths>

#include <atomic>
#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int jpegQuality = 82;
/// No thumbnail is as large; what is stands there by mistake or malice.
constexpr qint64 largestEntry = 16LL * 1024 * 1024;
constexpr int largestSide = 8192;
constexpr int directoryFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW;

/// The entry's bytes; empty when it is absent.
QByteArray readEntry(const FileDescriptor &directory, const QByteArray &name) {
    const FileDescriptor file =
        FileDescriptor::open(directory.get(), name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK);
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_size > largestEntry) {
        return {};
    }
    QByteArray bytes(qsizetype(status.st_size), Qt::Uninitialized);
    if (::pread(file.get(), bytes.data(), size_t(bytes.size()), 0) != bytes.size()) {
        return {};
    }
    return bytes;
}

/// With its parents; what is there already stays as it is.
void makeDirectory(const FileURL &url) {
    const char *path = url.nativePath().constData();
    bool made = ::mkdir(path, 0700) == 0;
    if (!made && errno == ENOENT && url.nativePath().size() > 1) {
        makeDirectory(url.deletingLastPathComponent());
        made = ::mkdir(path, 0700) == 0;
    }
    if (made) {
        // The umask may have taken from the owner what it takes to go on.
        ::chmod(path, 0700);
    }
}

QByteArray temporaryName(const QByteArray &name) {
    static std::atomic<unsigned> counter = 0;
    return ThumbnailCacheTrimmer::temporaryPrefix + QByteArray::number(qint64(::getpid())) + '-' +
           QByteArray::number(counter++) + '-' + name;
}

} // namespace

FileURL ThumbnailDiskCache::defaultDirectory() {
    const QString caches = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return FileURL::directory(QFile::encodeName(caches) + "/Mosa/Thumbnails");
}

QByteArray ThumbnailDiskCache::cacheName(const FileURL &media) {
    return QCryptographicHash::hash(media.nativePath(), QCryptographicHash::Sha256).toHex() + ".jpg";
}

FileDescriptor ThumbnailDiskCache::open() const {
    FileDescriptor directory =
        FileDescriptor::open(AT_FDCWD, m_directory.nativePath().constData(), directoryFlags);
    struct stat status {};
    const bool own =
        directory.isOpen() && ::fstat(directory.get(), &status) == 0 && status.st_uid == ::geteuid();
    return own ? std::move(directory) : FileDescriptor();
}

FileDescriptor ThumbnailDiskCache::create() const {
    makeDirectory(m_directory);
    FileDescriptor directory = open();
    if (directory.isOpen()) {
        // Others may have had rights in a directory that was there before.
        ::fchmod(directory.get(), 0700);
    }
    return directory;
}

void ThumbnailDiskCache::prepare(qint64 maximumBytes) const {
    FileDescriptor directory = create();
    if (directory.isOpen()) {
        ThumbnailCacheTrimmer::pruneCache(std::move(directory), maximumBytes);
    }
}

QImage ThumbnailDiskCache::read(const FileURL &media) const {
    const FileDescriptor directory = open();
    if (!directory.isOpen()) {
        return {};
    }
    return PictureCodec::decode(readEntry(directory, cacheName(media)), largestSide);
}

void ThumbnailDiskCache::write(const FileURL &media, const QImage &image) const {
    const QByteArray bytes = PictureCodec::encode(image, jpegQuality);
    if (bytes.isEmpty()) {
        return;
    }
    // The user may have emptied the caches while the program runs.
    FileDescriptor directory = open();
    if (!directory.isOpen()) {
        directory = create();
    }
    const QByteArray name = cacheName(media);
    const QByteArray temporary = temporaryName(name);
    const FileDescriptor file(::openat(directory.get(), temporary.constData(),
                                       O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file.isOpen()) {
        return;
    }
    const bool published =
        ::fchmod(file.get(), 0600) == 0 && !writeAll(file.get(), bytes.constData(), bytes.size(), 0) &&
        ::renameat(directory.get(), temporary.constData(), directory.get(), name.constData()) == 0;
    if (!published) {
        ::unlinkat(directory.get(), temporary.constData(), 0);
    }
}
