#include "PictureCodec.h"

#include <QBuffer>
#include <QImageReader>
#include <QImageWriter>
#include <QPainter>

namespace PictureCodec {

QImage flattened(const QImage &image, QRgb background) {
    if (!image.hasAlphaChannel()) {
        return image;
    }
    QImage result(image.size(), QImage::Format_RGB32);
    result.fill(background);
    QPainter(&result).drawImage(0, 0, image);
    return result;
}

QByteArray encode(const QImage &image, int quality) {
    QBuffer buffer;
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(quality);
    const bool written =
        buffer.open(QIODevice::WriteOnly) && writer.write(image.convertToFormat(QImage::Format_RGB888));
    return written ? buffer.data() : QByteArray();
}

QImage decode(const QByteArray &jpeg, int largestSide) {
    // The decoder would fill what is missing with grey.
    if (!jpeg.endsWith("\xFF\xD9")) {
        return {};
    }
    QBuffer buffer;
    buffer.setData(jpeg);
    QImageReader reader(&buffer, "jpeg");
    const QSize size = reader.size();
    if (size.isEmpty() || size.width() > largestSide || size.height() > largestSide) {
        return {};
    }
    const QImage image = reader.read();
    return image.isNull() ? image : image.convertToFormat(QImage::Format_RGB32);
}

} // namespace PictureCodec
