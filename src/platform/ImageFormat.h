#pragma once

#include "HeaderBytes.h"

#include <QByteArray>

/// Which of the picture formats a file is of, told by its first bytes whatever its name.
namespace ImageFormat {

/// Qt's name for the format: "jpeg", "png", "gif", "bmp", "ico", "tiff" or "webp"; "heif" for the container
/// family of HEIC, HEIF and AVIF. Empty when the content is none of them.
QByteArray of(HeaderBytes &bytes);

} // namespace ImageFormat
