#include "ExifChunk.h"

#include "HeaderBytes.h"

#include <algorithm>

namespace {

/// How a format lays its chunks out.
struct Shape {
    const char *type;
    HeaderBytes::Order order;
    qint64 first;
    /// From the chunk's start to its length, its type and its content.
    qint64 lengthAt;
    qint64 typeAt;
    /// Behind the content.
    qint64 checksum;
    bool even;
};

constexpr qint64 contentAt = 8;
constexpr Shape png{"eXIf", HeaderBytes::Order::big, 8, 0, 4, 4, false};
constexpr Shape webp{"EXIF", HeaderBytes::Order::little, 12, 4, 0, 0, true};

QByteArray content(const RegularFile &file, const Shape &shape) {
    HeaderBytes bytes(file);
    for (qint64 at = shape.first;;) {
        const auto length = bytes.u32(at + shape.lengthAt, shape.order);
        if (!length) {
            return {};
        }
        if (bytes.matches(at + shape.typeAt, shape.type, 4)) {
            // The orientation stands near the start.
            constexpr qint64 enough = 65536;
            QByteArray found(std::min<qint64>(*length, enough), Qt::Uninitialized);
            found.resize(std::max<qint64>(0, file.read(at + contentAt, found.data(), found.size())));
            return found;
        }
        at += contentAt + *length + shape.checksum + (shape.even ? *length % 2 : 0);
    }
}

} // namespace

QByteArray ExifChunk::tiff(const RegularFile &file, const QByteArray &format) {
    const QByteArray found = format == "png"    ? content(file, png)
                             : format == "webp" ? content(file, webp)
                                                : QByteArray();
    // Some writers keep the mark that JPEG wants.
    const QByteArrayView mark("Exif\0\0", 6);
    return found.startsWith(mark) ? found.mid(mark.size()) : found;
}
