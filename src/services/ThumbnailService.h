#pragma once

#include "FileURL.h"
#include "MediaFile.h"

#include <QFuture>
#include <QImage>
#include <QList>

#include <chrono>
#include <functional>
#include <memory>

/// Makes and keeps the small pictures of the grid: from memory, else from the disk cache, else made anew.
///
/// Requests are served one at a time, first come first served, off the calling thread; pictures in memory are
/// handed out at once. A request whose future was cancelled before its turn is skipped. A file that does not
/// answer within `patience` stops holding up the others: they go on beside it, and its own picture still
/// arrives should it ever answer. Any thread may ask.
class ThumbnailService {
public:
    struct Settings {
        FileURL cacheDirectory;
        /// Makes the picture of a photo or video; null when none can be made. Called from threads of the
        /// service, mostly one at a time.
        std::function<QImage(const MediaFile &file, int maxPixelSize)> generate;
        std::chrono::milliseconds patience{5000};
    };

    /// The program's one instance, made on first use; returns at once. It lives on until the process ends:
    /// finishShared() stops its threads.
    static ThumbnailService &shared();
    /// finish() of the shared instance if there is one.
    static bool finishShared(std::chrono::milliseconds limit);

    explicit ThumbnailService(Settings settings);
    /// finish() without a limit worth speaking of, for instances that tests made.
    ~ThumbnailService();
    ThumbnailService(const ThumbnailService &) = delete;
    ThumbnailService &operator=(const ThumbnailService &) = delete;

    /// The picture with its longer side at most maxPixelSize pixels, upright, in sRGB, opaque; a null image
    /// when none can be made, which is not remembered. The size is not part of what is kept: a picture that
    /// was made for another size is handed out as it is. The future of one that is in memory is finished
    /// already.
    QFuture<QImage> image(const MediaFile &file, int maxPixelSize);

    /// Prepares these pictures, in this order, while nobody waits for any other. Takes the place of what was
    /// to be prepared before; an empty list withdraws it.
    void prefetch(const QList<MediaFile> &files, int maxPixelSize);

    /// Cancels what waits and ends the service's threads; further requests are cancelled at once. False when
    /// a file did not answer within the limit: its thread is then left behind, and the process should end
    /// without unwinding.
    bool finish(std::chrono::milliseconds limit);

private:
    class Executor;
    std::unique_ptr<Executor> m_executor;
};
