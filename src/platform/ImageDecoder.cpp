#include "ImageDecoder.h"

#include "ImageFormat.h"
#include "ImageSource.h"

#include <algorithm>
#include <cmath>

namespace {

using ImageSource::TargetSize;

QImage read(const RegularFile &file, const QByteArray &format, const TargetSize &targetSize,
            const ImageDecoder::Cancelled &cancelled) {
    if (format == "heif") {
        return ImageSource::readHeif(file, targetSize, cancelled);
    }
    if (format == "jpeg") {
        return ImageSource::readJpeg(file, targetSize, cancelled);
    }
    return ImageSource::readWithQt(file, format, targetSize, cancelled);
}

QImage decode(const FileURL &url, const TargetSize &targetSize, const ImageDecoder::Cancelled &cancelled) {
    const auto file = RegularFile::open(url);
    if (!file) {
        return {};
    }
    HeaderBytes head(*file);
    const QByteArray format = ImageFormat::of(head);
    if (format.isEmpty()) {
        return {};
    }
    QImage image = read(*file, format, targetSize, cancelled);
    if (cancelled && cancelled()) {
        return {};
    }
    image.setDevicePixelRatio(1);
    return image;
}

QSize scaledBy(QSize size, double factor) {
    return {std::clamp(int(std::lround(size.width() * factor)), 1, size.width()),
            std::clamp(int(std::lround(size.height() * factor)), 1, size.height())};
}

} // namespace

namespace ImageDecoder {

QImage thumbnail(const FileURL &url, int maxPixelSize, const Cancelled &cancelled) {
    if (maxPixelSize < 1) {
        return {};
    }
    return decode(
        url,
        [maxPixelSize](QSize size) {
            return scaledBy(size,
                            std::min(1.0, double(maxPixelSize) / std::max(size.width(), size.height())));
        },
        cancelled);
}

QImage image(const FileURL &url, qint64 maxPixels, const Cancelled &cancelled) {
    return decode(
        url,
        [maxPixels](QSize size) {
            const double pixels = double(size.width()) * size.height();
            return scaledBy(size, std::min(1.0, std::sqrt(double(maxPixels) / pixels)));
        },
        cancelled);
}

} // namespace ImageDecoder
