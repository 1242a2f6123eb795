#include "MediaMaker.h"

#include "MediaCache.h"

#include <QColor>
#include <QDebug>

#include <array>
#include <fstream>
#include <iterator>
#include <random>

#include <unistd.h>

namespace MediaMaker {

namespace {

const std::array<QColor, 4> quadrants{QColor(210, 50, 50), QColor(50, 170, 60), QColor(50, 60, 200),
                                      QColor(220, 200, 60)};

QColor quadrantColor(bool right, bool bottom) {
    return quadrants[size_t(right ? 1 : 0) + size_t(bottom ? 2 : 0)];
}

/// Mean over a small area, so that noise and compression do not matter.
QColor meanAround(const QImage &image, int x, int y) {
    const int reach = std::max(0, std::min(image.width(), image.height()) / 16);
    std::array<int, 3> sum{};
    int count = 0;
    for (int v = std::max(0, y - reach); v <= std::min(image.height() - 1, y + reach); ++v) {
        for (int u = std::max(0, x - reach); u <= std::min(image.width() - 1, x + reach); ++u) {
            const QColor color = image.pixelColor(u, v);
            sum[0] += color.red();
            sum[1] += color.green();
            sum[2] += color.blue();
            ++count;
        }
    }
    return {sum[0] / count, sum[1] / count, sum[2] / count};
}

} // namespace

const QList<QByteArray> &photoExtensions() {
    static const QList<QByteArray> list{"avif", "bmp", "gif", "heic", "heif", "jpeg",
                                        "jpg",  "png", "tif", "tiff", "webp"};
    return list;
}

const QList<QByteArray> &videoExtensions() {
    static const QList<QByteArray> list{"3gp", "asf",  "avi", "divx", "flv", "m2ts", "m4v",
                                        "mkv", "mov",  "mp4", "mpeg", "mpg", "mts",  "ogv",
                                        "rm",  "rmvb", "ts",  "webm", "wmv"};
    return list;
}

QImage pattern(const QSize &size) {
    QImage image(size, QImage::Format_RGB888);
    std::minstd_rand random(7);
    const auto shifted = [&](int value) {
        return uchar(std::clamp(value + int(random() % 49) - 24, 0, 255));
    };
    for (int y = 0; y < size.height(); ++y) {
        uchar *line = image.scanLine(y);
        for (int x = 0; x < size.width(); ++x) {
            const QColor color = quadrantColor(2 * x >= size.width(), 2 * y >= size.height());
            *line++ = shifted(color.red());
            *line++ = shifted(color.green());
            *line++ = shifted(color.blue());
        }
    }
    return image;
}

bool showsPattern(const QImage &image) {
    if (image.isNull()) {
        return false;
    }
    for (const bool right : {false, true}) {
        for (const bool bottom : {false, true}) {
            const QColor seen =
                meanAround(image, image.width() * (right ? 3 : 1) / 4, image.height() * (bottom ? 3 : 1) / 4);
            const QColor expected = quadrantColor(right, bottom);
            const int distance = std::abs(seen.red() - expected.red()) +
                                 std::abs(seen.green() - expected.green()) +
                                 std::abs(seen.blue() - expected.blue());
            if (distance > 90) {
                return false;
            }
        }
    }
    return true;
}

bool write(const FileURL &target, const QByteArray &content) {
    // Anew instead of over: file systems flush a file that is truncated and written.
    ::unlink(target.nativePath().constData());
    std::ofstream file(target.nativePath().constData(), std::ios::binary);
    return bool(file.write(content.constData(), content.size()).flush());
}

QByteArray read(const FileURL &url) {
    std::ifstream file(url.nativePath().constData(), std::ios::binary);
    return QByteArray::fromStdString({std::istreambuf_iterator<char>(file), {}});
}

QByteArray noise(qsizetype length, quint32 seed) {
    QByteArray bytes(length, '\0');
    std::mt19937 random(seed);
    for (char &byte : bytes) {
        byte = char(random());
    }
    return bytes;
}

QList<QByteArray> damaged(const QByteArray &content, int changed) {
    QList<QByteArray> variants{{},
                               QByteArray(60'000, '\0'),
                               noise(60'000),
                               content.mid(1),
                               content.left(200),
                               content.left(400) + noise(60'000)};
    for (int i = 1; i < 8; ++i) {
        variants << content.left(content.size() * i / 8);
    }
    std::mt19937 random(20);
    for (int i = 0; i < changed; ++i) {
        QByteArray bytes = content;
        const auto reach = quint32(std::min<qsizetype>(bytes.size(), i % 3 == 0 ? 64 : 256 << i % 5));
        for (quint32 change = 0; change <= random() % 12; ++change) {
            const qsizetype place = random() % reach;
            bytes[random() % 4 != 0 ? place : bytes.size() - 1 - place] =
                i % 2 == 0 ? char(random()) : char(random() % 2 == 0 ? 0 : 0xFF);
        }
        variants << bytes;
    }
    return variants;
}

QByteArray exifOrientation(int orientation, bool segment) {
    // Big-endian TIFF with one entry: tag 0x0112, type SHORT, one value.
    QByteArray tiff("MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0", 19);
    tiff += char(orientation);
    tiff += QByteArray(6, '\0');
    if (!segment) {
        return tiff;
    }
    const QByteArray body = QByteArray("Exif\0\0", 6) + tiff;
    const auto length = quint16(body.size() + 2);
    return QByteArray("\xFF\xE1", 2) + char(length >> 8) + char(length & 0xFF) + body;
}

} // namespace MediaMaker
