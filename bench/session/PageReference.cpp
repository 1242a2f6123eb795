#include "PageReference.h"

#include "ScanReferences.h"
#include "ThumbnailDiskCache.h"
#include "ThumbnailReferences.h"

#include <QElapsedTimer>

namespace {

constexpr int thumbnailSize = 720;

template <typename Work>
double timed(Work work) {
    QElapsedTimer clock;
    clock.start();
    work();
    return double(clock.nsecsElapsed()) * 1e-6;
}

} // namespace

double PageReference::scan(const ScanInput::Library &library, const FileURL &folder) {
    return timed([&] {
        ScanReferences::walk(folder);
        for (const FileURL &file : library.photos) {
            ScanReferences::photoSize(file);
        }
        for (const QList<FileURL> &videos : {library.commonVideos, library.broadcastVideos}) {
            for (const FileURL &file : videos) {
                ScanReferences::videoSize(file);
            }
        }
    });
}

double PageReference::pictures(const QList<QByteArray> &files) {
    return timed([&] {
        for (const QByteArray &path : files) {
            const FileURL file = FileURL::fromNativePath(path);
            if (path.endsWith(".jpg")) {
                ThumbnailReferences::turboThumbnail(file, thumbnailSize);
            } else {
                ThumbnailReferences::libavStill(file, thumbnailSize);
            }
        }
    });
}

double PageReference::cachedPictures(const QList<QByteArray> &files, const QString &cacheHome) {
    const FileURL directory = FileURL::directory(cacheHome.toUtf8()).appending("Mosa/Thumbnails");
    return timed([&] {
        for (const QByteArray &path : files) {
            ThumbnailReferences::turboDecode(
                directory.appending(ThumbnailDiskCache::cacheName(FileURL::fromNativePath(path))));
        }
    });
}
