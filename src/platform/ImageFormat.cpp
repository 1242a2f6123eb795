#include "ImageFormat.h"

#include <array>

namespace {

struct Signature {
    qint64 offset;
    QByteArrayView bytes;
    const char *format;
};

constexpr std::array signatures{
    Signature{0, QByteArrayView("\xFF\xD8\xFF", 3), "jpeg"},
    Signature{0, QByteArrayView("\x89PNG\r\n\x1A\n", 8), "png"},
    Signature{4, QByteArrayView("ftyp", 4), "heif"},
    Signature{8, QByteArrayView("WEBP", 4), "webp"},
    Signature{0, QByteArrayView("GIF8", 4), "gif"},
    Signature{0, QByteArrayView("II\x2A\0", 4), "tiff"},
    Signature{0, QByteArrayView("MM\0\x2A", 4), "tiff"},
    Signature{0, QByteArrayView("II\x2B\0", 4), "tiff"},
    Signature{0, QByteArrayView("MM\0\x2B", 4), "tiff"},
    Signature{0, QByteArrayView("\0\0\1\0", 4), "ico"},
    Signature{0, QByteArrayView("BM", 2), "bmp"},
};

} // namespace

QByteArray ImageFormat::of(HeaderBytes &bytes) {
    for (const Signature &signature : signatures) {
        if (bytes.matches(signature.offset, signature.bytes.data(), signature.bytes.size())) {
            return signature.format;
        }
    }
    return {};
}
