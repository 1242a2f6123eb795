#pragma once

#include "FileURL.h"

#include <QSize>

#include <optional>

/// What the head of an image file tells without decoding. Any thread.
namespace ImageHeader {

/// Width and height in pixels of the first image, told by the file's content whatever its name: JPEG, PNG,
/// GIF, BMP, ICO, WebP, TIFF as stored, that is, before any orientation tag; HEIC, HEIF and AVIF as
/// displayed, after the container's rotation. None when the file is no such image, when its header is broken
/// or absent, or when either side is zero.
std::optional<QSize> pixelSize(const FileURL &url);

} // namespace ImageHeader
