#pragma once

#include "MediaFile.h"

#include <QFuture>
#include <QImage>

/// Makes and keeps the small pictures of the grid. Requests are served one at a time, first come first
/// served, off the main thread. A request whose future was cancelled before its turn is skipped.
class ThumbnailService {
public:
    static ThumbnailService &shared();

    /// The picture with its longer side at most maxPixelSize pixels, upright, in sRGB; a null image when none
    /// can be made.
    QFuture<QImage> image(const MediaFile &file, int maxPixelSize);
};
