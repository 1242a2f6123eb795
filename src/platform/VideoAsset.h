#pragma once

#include "FileURL.h"

#include <QSizeF>

#include <optional>

/// What a video file tells about its picture. Any thread; ends in bounded time whatever the file holds.
namespace VideoAsset {

/// Width and height of the first video track's picture as displayed: pixels made square, turned as the
/// container demands. None when the file is no video, has no video track (cover art is none) or does not tell
/// the track's size.
std::optional<QSizeF> displaySize(const FileURL &url);

} // namespace VideoAsset
