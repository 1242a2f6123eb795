#pragma once

#include <QByteArray>
#include <QImage>

/// Small pictures of our own, as they are kept on disk. Any thread.
namespace PictureCodec {

/// The picture on a plain background, RGB32; the picture itself when it has no alpha.
QImage flattened(const QImage &image, QRgb background);

/// JPEG at the quality 0…100; empty on failure. Alpha is lost.
QByteArray encode(const QImage &image, int quality);

/// The reverse, RGB32; null when the bytes are no whole JPEG or its sides exceed largestSide pixels.
QImage decode(const QByteArray &jpeg, int largestSide);

} // namespace PictureCodec
