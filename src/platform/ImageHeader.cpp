#include "ImageHeader.h"

#include "Codecs.h"
#include "ImageFormat.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace {

using Size = std::optional<QSize>;
using Order = HeaderBytes::Order;

Size sizeOf(std::optional<quint64> width, std::optional<quint64> height) {
    constexpr quint64 limit = std::numeric_limits<int>::max();
    if (!width || !height || *width == 0 || *height == 0 || *width > limit || *height > limit) {
        return std::nullopt;
    }
    return QSize(int(*width), int(*height));
}

Size jpegSize(HeaderBytes &bytes) {
    qint64 at = 2;
    for (;;) {
        // A marker is a byte of ones, repeated at will, and a byte that is neither zeros nor ones. Decoders
        // pass over stray bytes before it.
        std::optional<quint8> marker;
        bool ones = false;
        do {
            ones = marker == 0xFF;
            marker = bytes.u8(at++);
        } while (marker && !(ones && *marker != 0 && *marker != 0xFF));
        if (!marker) {
            return std::nullopt;
        }
        const bool frame =
            *marker >= 0xC0 && *marker <= 0xCF && *marker != 0xC4 && *marker != 0xC8 && *marker != 0xCC;
        if (frame) {
            return sizeOf(bytes.u16(at + 5, Order::big), bytes.u16(at + 3, Order::big));
        }
        const bool bare = *marker == 0x01 || (*marker >= 0xD0 && *marker <= 0xD8);
        if (bare) {
            continue;
        }
        const auto length = bytes.u16(at, Order::big);
        constexpr quint8 endOfImage = 0xD9;
        constexpr quint8 startOfScan = 0xDA;
        if (!length || *length < 2 || *marker == endOfImage || *marker == startOfScan) {
            return std::nullopt;
        }
        at += *length;
    }
}

Size pngSize(HeaderBytes &bytes) {
    qint64 at = 8;
    // A variant written by phones puts a chunk of its own first.
    if (bytes.matches(at + 4, "CgBI", 4)) {
        at += qint64(bytes.u32(at, Order::big).value_or(0)) + 12;
    }
    if (!bytes.matches(at + 4, "IHDR", 4)) {
        return std::nullopt;
    }
    return sizeOf(bytes.u32(at + 8, Order::big), bytes.u32(at + 12, Order::big));
}

Size gifSize(HeaderBytes &bytes) {
    return sizeOf(bytes.u16(6, Order::little), bytes.u16(8, Order::little));
}

Size icoSize(HeaderBytes &bytes) {
    const auto side = [&](qint64 at) -> std::optional<quint64> {
        const auto told = bytes.u8(at);
        return told == 0 ? 256 : std::optional<quint64>(told);
    };
    return sizeOf(side(6), side(7));
}

Size bmpSize(HeaderBytes &bytes) {
    const auto headerLength = bytes.u32(14, Order::little);
    if (headerLength == 12U) {
        return sizeOf(bytes.u16(18, Order::little), bytes.u16(20, Order::little));
    }
    const auto width = bytes.u32(18, Order::little);
    const auto height = bytes.u32(22, Order::little);
    if (!headerLength || *headerLength < 16 || !width || !height) {
        return std::nullopt;
    }
    // Rows stored from the top down have a negative height.
    return sizeOf(*width, quint64(std::abs(qint64(qint32(*height)))));
}

Size webpSize(HeaderBytes &bytes) {
    if (bytes.matches(12, "VP8X", 4)) {
        const auto width = bytes.u24(24, Order::little);
        const auto height = bytes.u24(27, Order::little);
        return width && height ? sizeOf(*width + 1, *height + 1) : std::nullopt;
    }
    if (bytes.matches(12, "VP8L", 4) && bytes.u8(20) == 0x2F) {
        const auto packed = bytes.u32(21, Order::little);
        return packed ? sizeOf((*packed & 0x3FFF) + 1, (*packed >> 14 & 0x3FFF) + 1) : std::nullopt;
    }
    if (bytes.matches(12, "VP8 ", 4) && bytes.matches(23, "\x9D\x01\x2A", 3)) {
        const auto width = bytes.u16(26, Order::little);
        const auto height = bytes.u16(28, Order::little);
        return width && height ? sizeOf(*width & 0x3FFF, *height & 0x3FFF) : std::nullopt;
    }
    return std::nullopt;
}

/// Classic TIFF and BigTIFF differ in the widths of their offsets and counts.
struct TiffShape {
    Order order;
    bool big;

    qint64 entryLength() const { return big ? 20 : 12; }
    std::optional<quint64> offset(HeaderBytes &bytes, qint64 at) const {
        return big ? bytes.u64(at, order) : std::optional<quint64>(bytes.u32(at, order));
    }
    std::optional<quint64> entryCount(HeaderBytes &bytes, qint64 at) const {
        return big ? bytes.u64(at, order) : std::optional<quint64>(bytes.u16(at, order));
    }
    /// The value of a directory entry that holds one unsigned number.
    std::optional<quint64> value(HeaderBytes &bytes, qint64 entry) const {
        enum { type16 = 3, type32 = 4, type64 = 16 };
        const auto type = bytes.u16(entry + 2, order);
        const qint64 at = entry + (big ? 12 : 8);
        if (type == quint16(type16)) {
            return bytes.u16(at, order);
        }
        if (type == quint16(type32)) {
            return bytes.u32(at, order);
        }
        return type == quint16(type64) && big ? bytes.u64(at, order) : std::nullopt;
    }
};

Size tiffSize(HeaderBytes &bytes) {
    constexpr quint64 maximumEntries = 4096;
    enum { imageWidth = 0x100, imageLength = 0x101 };
    const Order order = bytes.matches(0, "II", 2) ? Order::little : Order::big;
    const TiffShape shape{.order = order, .big = bytes.u16(2, order) == 43};
    const auto directory = shape.offset(bytes, shape.big ? 8 : 4);
    constexpr auto farthest = quint64(std::numeric_limits<qint64>::max() / 2);
    if (!directory || *directory > farthest) {
        return std::nullopt;
    }
    const auto count = shape.entryCount(bytes, qint64(*directory));
    qint64 entry = qint64(*directory) + (shape.big ? 8 : 2);
    std::optional<quint64> width;
    std::optional<quint64> height;
    for (quint64 i = 0; i < std::min(count.value_or(0), maximumEntries) && !(width && height); ++i) {
        const auto tag = bytes.u16(entry, order);
        if (!tag) {
            break;
        }
        if (*tag == imageWidth) {
            width = shape.value(bytes, entry);
        } else if (*tag == imageLength) {
            height = shape.value(bytes, entry);
        }
        entry += shape.entryLength();
    }
    return sizeOf(width, height);
}

} // namespace

std::optional<QSize> ImageHeader::pixelSize(const FileURL &url) {
    const auto file = RegularFile::open(url);
    if (!file) {
        return std::nullopt;
    }
    HeaderBytes bytes(*file);
    const QByteArray format = ImageFormat::of(bytes);
    return format == "jpeg"   ? jpegSize(bytes)
           : format == "png"  ? pngSize(bytes)
           : format == "heif" ? Codecs::loaded().heifPixelSize(*file)
           : format == "webp" ? webpSize(bytes)
           : format == "gif"  ? gifSize(bytes)
           : format == "tiff" ? tiffSize(bytes)
           : format == "ico"  ? icoSize(bytes)
           : format == "bmp"  ? bmpSize(bytes)
                              : std::nullopt;
}
