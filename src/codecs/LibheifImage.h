#pragma once

#include "ImageSource.h"

/// The pictures of HEIC, HEIF and AVIF files.
namespace LibheifImage {

/// The primary image, upright and reduced, in the file's colour space.
QImage read(const RegularFile &file, const ImageSource::TargetSize &targetSize,
            const ImageDecoder::Cancelled &cancelled);

} // namespace LibheifImage
