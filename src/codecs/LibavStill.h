#pragma once

#include "FileURL.h"

#include <QImage>

/// VideoStill by libavcodec.
namespace LibavStill {

/// As VideoStill::frame() gives it, but in the video's colour space.
QImage frame(const FileURL &url, int maxPixelSize);

} // namespace LibavStill
