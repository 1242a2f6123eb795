#include "ThumbnailService.h"

#include "ImageDecoder.h"
#include "ThumbnailDiskCache.h"
#include "ThumbnailExecutor.h"
#include "VideoStill.h"

#include <atomic>

namespace {

std::atomic<ThumbnailService *> sharedInstance = nullptr;

QImage generate(const MediaFile &file, int maxPixelSize) {
    return file.kind == MediaKind::video ? VideoStill::frame(file.url, maxPixelSize)
                                         : ImageDecoder::thumbnail(file.url, maxPixelSize);
}

} // namespace

ThumbnailService &ThumbnailService::shared() {
    // Never destroyed: the destructor would wait for a file system that does not answer.
    static ThumbnailService *const instance = [] {
        auto *made = new ThumbnailService(
            {.cacheDirectory = ThumbnailDiskCache::defaultDirectory(), .generate = generate});
        sharedInstance = made;
        return made;
    }();
    return *instance;
}

bool ThumbnailService::finishShared(std::chrono::milliseconds limit) {
    ThumbnailService *instance = sharedInstance;
    return instance == nullptr || instance->finish(limit);
}

ThumbnailService::ThumbnailService(Settings settings)
    : m_executor(std::make_unique<Executor>(std::move(settings))) {}

ThumbnailService::~ThumbnailService() {
    finish(std::chrono::minutes(1));
}

QFuture<QImage> ThumbnailService::image(const MediaFile &file, int maxPixelSize) {
    return m_executor->request(file, maxPixelSize);
}

void ThumbnailService::prefetch(const QList<MediaFile> &files, int maxPixelSize) {
    m_executor->prefetch(files, maxPixelSize);
}

bool ThumbnailService::finish(std::chrono::milliseconds limit) {
    return m_executor->finish(limit);
}
