#include "ImageDecoder.h"

#include "ImageSource.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace {

using ImageSource::TargetSize;

struct Signature {
    int offset;
    QByteArrayView bytes;
    /// Qt's name for the format; "heif" for the container family that libheif reads.
    const char *format;
};

constexpr std::array signatures{
    Signature{0, QByteArrayView("\xFF\xD8\xFF", 3), "jpeg"},
    Signature{0, QByteArrayView("\x89PNG\r\n\x1A\n", 8), "png"},
    Signature{0, QByteArrayView("GIF8", 4), "gif"},
    Signature{0, QByteArrayView("BM", 2), "bmp"},
    Signature{0, QByteArrayView("\0\0\1\0", 4), "ico"},
    Signature{0, QByteArrayView("II\x2A\0", 4), "tiff"},
    Signature{0, QByteArrayView("MM\0\x2A", 4), "tiff"},
    Signature{0, QByteArrayView("II\x2B\0", 4), "tiff"},
    Signature{0, QByteArrayView("MM\0\x2B", 4), "tiff"},
    Signature{8, QByteArrayView("WEBP", 4), "webp"},
    Signature{4, QByteArrayView("ftyp", 4), "heif"},
};

/// Empty when the content is none of the known formats.
QByteArray formatOf(const RegularFile &file) {
    std::array<char, 16> head{};
    const qint64 length = file.read(0, head.data(), qint64(head.size()));
    for (const Signature &signature : signatures) {
        if (signature.offset + signature.bytes.size() <= length &&
            std::memcmp(head.data() + signature.offset, signature.bytes.data(),
                        size_t(signature.bytes.size())) == 0) {
            return signature.format;
        }
    }
    return {};
}

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
    const QByteArray format = formatOf(*file);
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
