#include "ImageSource.h"

#include "AreaReducer.h"
#include "RegularFileDevice.h"

#include <QColorSpace>
#include <QImageIOHandler>
#include <QImageReader>

namespace {

/// Turns a picture as QImageReader would, but after it has been reduced.
QImage transformed(QImage image, QImageIOHandler::Transformations transformation) {
    const bool mirror = transformation.testFlag(QImageIOHandler::TransformationMirror);
    const bool flip = transformation.testFlag(QImageIOHandler::TransformationFlip);
    if (mirror || flip) {
        image = std::move(image).mirrored(mirror, flip);
    }
    if (transformation.testFlag(QImageIOHandler::TransformationRotate90)) {
        image = image.transformed(QTransform().rotate(90));
    }
    return image;
}

qint64 bytesNeeded(QSize size, QImage::Format format) {
    const int depth = format == QImage::Format_Invalid ? 32 : QImage::toPixelFormat(format).bitsPerPixel();
    return qint64(size.width()) * size.height() * depth / 8;
}

} // namespace

namespace ImageSource {

QImage readWithQt(const RegularFile &file, const QByteArray &format, const TargetSize &targetSize,
                  const ImageDecoder::Cancelled &cancelled) {
    // The reader's own limit of 128 MB refuses photos of 33 megapixels; the check below takes its place.
    [[maybe_unused]] static const bool limitRaised = [] {
        QImageReader::setAllocationLimit(0);
        return true;
    }();
    RegularFileDevice device(file, cancelled);
    QImageReader reader(&device, format);
    reader.setAutoTransform(false);
    const QSize size = reader.size();
    if (size.isEmpty()) {
        return {};
    }
    const QSize target = targetSize(size);
    const bool scalesWhileDecoding = reader.supportsOption(QImageIOHandler::ScaledSize);
    if (bytesNeeded(scalesWhileDecoding ? target : size, reader.imageFormat()) > ImageDecoder::memoryLimit) {
        return {};
    }
    const QImageIOHandler::Transformations transformation = reader.transformation();
    if (scalesWhileDecoding && target != size) {
        reader.setScaledSize(target);
    }
    const QImage image = reader.read();
    // Some handlers find out while decoding that the header lied.
    if (image.isNull() || image.width() < target.width() || image.height() < target.height()) {
        return {};
    }
    return transformed(toSRGB(AreaReducer::reduce(image, target)), transformation);
}

QImage toSRGB(QImage image) {
    const QColorSpace space = image.colorSpace();
    const QColorSpace target(QColorSpace::SRgb);
    if (space.isValid() && space != target) {
        image.convertToColorSpace(target);
    }
    image.setColorSpace(target);
    return image;
}

} // namespace ImageSource
