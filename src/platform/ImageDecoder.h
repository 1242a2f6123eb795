#pragma once

#include "FileURL.h"

#include <QImage>

#include <functional>

/// Decodes photos: JPEG, PNG, TIFF, WebP, BMP, GIF and ICO (the first picture of each), HEIC, HEIF and AVIF.
/// What the file holds decides, not its extension.
///
/// All pictures come out upright, in sRGB, as RGB32 or, with alpha, ARGB32_Premultiplied, and never enlarged.
/// A null image when the file is missing, not a regular file, not a picture, damaged beyond its header, or
/// needs more than memoryLimit to be decoded. Any thread; blocks.
namespace ImageDecoder {

/// What the decoded pixels of one picture may take, in bytes: 300 megapixels of four bytes. It bounds files
/// of a few kilobytes that declare gigapixels. Formats that are decoded at a reduced size are charged for
/// that size alone.
constexpr qint64 memoryLimit = 1'200'000'000;

/// The most pixels of a picture that is shown whole; a larger one is reduced to this.
constexpr qint64 fullImagePixels = 100'000'000;

/// Looked at while the file is read; true ends the decoding with a null image.
using Cancelled = std::function<bool()>;

/// The longer side is at most maxPixelSize pixels. Always made from the whole picture, never from a preview
/// that the file carries.
QImage thumbnail(const FileURL &url, int maxPixelSize, const Cancelled &cancelled = {});

/// The whole picture, reduced only beyond maxPixels.
QImage image(const FileURL &url, qint64 maxPixels = fullImagePixels, const Cancelled &cancelled = {});

} // namespace ImageDecoder
