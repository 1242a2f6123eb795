#include "ImageSource.h"

#include "AreaReducer.h"
#include "Codecs.h"
#include "ExifChunk.h"
#include "ExifOrientation.h"
#include "RegularFileDevice.h"

#include <QColorSpace>
#include <QImageIOHandler>
#include <QImageReader>
#include <QTransform>

#include <algorithm>

namespace {

/// Headers may declare sizes whose bytes no integer can count; their pixels still fit.
bool exceedsMemoryLimit(QSize size, QImage::Format format) {
    const int depth = format == QImage::Format_Invalid ? 32 : QImage::toPixelFormat(format).bitsPerPixel();
    return qint64(size.width()) * size.height() > ImageDecoder::memoryLimit * 8 / depth;
}

/// Formats and palettes with room for alpha are often filled without it.
bool isOpaque(const QImage &image) {
    for (int y = 0; y < image.height(); ++y) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        if (std::any_of(line, line + image.width(), [](QRgb pixel) { return qAlpha(pixel) != 255; })) {
            return false;
        }
    }
    return true;
}

} // namespace

namespace ImageSource {

QImage readHeif(const RegularFile &file, const TargetSize &targetSize,
                const ImageDecoder::Cancelled &cancelled) {
    return finished(Codecs::loaded().heifImage(file, targetSize, cancelled));
}

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
    if (exceedsMemoryLimit(scalesWhileDecoding ? target : size, reader.imageFormat())) {
        return {};
    }
    const QByteArray exif = ExifChunk::tiff(file, format);
    const auto transformation =
        exif.isEmpty() ? reader.transformation() : ExifOrientation::transformation(exif);
    if (scalesWhileDecoding && target != size) {
        reader.setScaledSize(target);
    }
    const QImage image = reader.read();
    // Some handlers find out while decoding that the header lied.
    if (image.isNull() || image.width() < target.width() || image.height() < target.height()) {
        return {};
    }
    return transformed(finished(AreaReducer::reduce(image, target)), transformation);
}

QImage finished(QImage image) {
    image = toSRGB(std::move(image));
    return image.hasAlphaChannel() && isOpaque(image) ? image.convertToFormat(QImage::Format_RGB32) : image;
}

QImage transformed(QImage image, QImageIOHandler::Transformations transformation) {
    const bool mirror = transformation.testFlag(QImageIOHandler::TransformationMirror);
    const bool flip = transformation.testFlag(QImageIOHandler::TransformationFlip);
    if (mirror || flip) {
        image = std::move(image).mirrored(mirror, flip);
    }
    if (transformation.testFlag(QImageIOHandler::TransformationRotate90)) {
        const QColorSpace space = image.colorSpace();
        image = image.transformed(QTransform().rotate(90));
        image.setColorSpace(space);
    }
    return image;
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
