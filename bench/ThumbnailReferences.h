#pragma once

#include "FileURL.h"

#include <QImage>

/// The fastest plain use of the peers that does what Mosa does for a thumbnail.
namespace ThumbnailReferences {

/// libjpeg-turbo reduces by eighths while it decodes, then one area step.
QImage turboThumbnail(const FileURL &url, int maxPixelSize);
QImage vipsThumbnail(const FileURL &url, int maxPixelSize);
QImage qtThumbnail(const FileURL &url, int maxPixelSize);
/// With the decoder that libheif brings along.
QImage heifThumbnail(const FileURL &url, int maxPixelSize);
/// Open, seek, one key frame, flush, scale.
QImage libavStill(const FileURL &url, int maxPixelSize);
/// A process of its own that writes a PNG.
QImage thumbnailerStill(const FileURL &url, int maxPixelSize);
/// A small JPEG, decoded whole.
QImage turboDecode(const FileURL &url);

} // namespace ThumbnailReferences
