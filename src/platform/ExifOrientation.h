#pragma once

#include <QByteArrayView>
#include <QImageIOHandler>

/// The turn that brings a picture upright, from the TIFF structure that EXIF metadata are (without the
/// "Exif" mark before it). None when it is absent, damaged or out of range.
namespace ExifOrientation {

QImageIOHandler::Transformations transformation(QByteArrayView tiff);

} // namespace ExifOrientation
