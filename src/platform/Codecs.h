#pragma once

#include "ImageSource.h"

#include <QSizeF>

#include <optional>

/// What takes FFmpeg and libheif. They are linked by a module of their own, because loading them and all that
/// they link in turn takes a fifth of the time until the program's first frame, which needs none of it.
struct Codecs {
    /// VideoAsset::displaySize().
    std::optional<QSizeF> (*videoDisplaySize)(const FileURL &url);
    /// VideoStill::frame() in the video's colour space.
    QImage (*videoFrame)(const FileURL &url, int maxPixelSize);
    /// Of the primary image of a HEIC, HEIF or AVIF file, after the container's crop and rotation.
    std::optional<QSize> (*heifPixelSize)(const RegularFile &file);
    /// That image, upright and reduced, in the file's colour space.
    QImage (*heifImage)(const RegularFile &file, const ImageSource::TargetSize &targetSize,
                        const ImageDecoder::Cancelled &cancelled);

    /// Loads the module with the first call, for the rest of the run. Any thread. Without the module nothing
    /// can be read: sizes are none and pictures null.
    static const Codecs &loaded();
};
