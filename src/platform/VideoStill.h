#pragma once

#include "FileURL.h"

#include <QImage>

/// Takes one picture out of a video.
namespace VideoStill {

/// The frame near 0.2 × the duration, or near one second when the duration is not known: upright, with square
/// pixels, in sRGB, RGB32, inside a square of maxPixelSize and never enlarged. Any frame near that can be
/// decoded will do; where there is none, the first of the video. A null image when the file is missing, not a
/// regular file, has no video track, holds frames of more than largestFrame pixels, or yields no frame within
/// timeLimit seconds. Any thread; blocks.
QImage frame(const FileURL &url, int maxPixelSize);

/// Bounds the decoder's memory; 16K video has 133 million.
constexpr qint64 largestFrame = 140'000'000;
constexpr int timeLimit = 10;

} // namespace VideoStill
