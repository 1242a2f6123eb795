#pragma once

#include "ImageSource.h"

#include <optional>

/// The pictures of HEIC, HEIF and AVIF files.
namespace LibheifImage {

/// Of the primary image, after the container's crop and rotation; none when it cannot be told.
std::optional<QSize> pixelSize(const RegularFile &file);

/// The primary image, upright and reduced, in the file's colour space.
QImage read(const RegularFile &file, const ImageSource::TargetSize &targetSize,
            const ImageDecoder::Cancelled &cancelled);

} // namespace LibheifImage
