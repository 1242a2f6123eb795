#include "ExifOrientation.h"

#include <QtEndian>

#include <optional>

namespace {

/// Numbers of a TIFF structure; absent beyond its end.
class Tiff {
public:
    explicit Tiff(QByteArrayView bytes) : m_bytes(bytes), m_little(bytes.startsWith("II")) {}

    bool isValid() const { return (m_little || m_bytes.startsWith("MM")) && number<quint16>(2) == 42; }

    template <typename Number>
    std::optional<Number> number(qint64 at) const {
        if (at < 0 || at + qint64(sizeof(Number)) > m_bytes.size()) {
            return std::nullopt;
        }
        const char *bytes = m_bytes.data() + at;
        return m_little ? qFromLittleEndian<Number>(bytes) : qFromBigEndian<Number>(bytes);
    }

private:
    QByteArrayView m_bytes;
    bool m_little;
};

QImageIOHandler::Transformations fromTag(int orientation) {
    switch (orientation) {
    case 2:
        return QImageIOHandler::TransformationMirror;
    case 3:
        return QImageIOHandler::TransformationRotate180;
    case 4:
        return QImageIOHandler::TransformationFlip;
    case 5:
        return QImageIOHandler::TransformationFlipAndRotate90;
    case 6:
        return QImageIOHandler::TransformationRotate90;
    case 7:
        return QImageIOHandler::TransformationMirrorAndRotate90;
    case 8:
        return QImageIOHandler::TransformationRotate270;
    default:
        return QImageIOHandler::TransformationNone;
    }
}

} // namespace

namespace ExifOrientation {

QImageIOHandler::Transformations transformation(QByteArrayView bytes) {
    constexpr quint16 orientationTag = 0x0112;
    constexpr qint64 entryLength = 12;
    const Tiff tiff(bytes);
    const auto directory = tiff.isValid() ? tiff.number<quint32>(4) : std::nullopt;
    if (!directory) {
        return {};
    }
    const qint64 count = tiff.number<quint16>(*directory).value_or(0);
    for (qint64 i = 0; i < count; ++i) {
        const qint64 entry = qint64(*directory) + 2 + i * entryLength;
        const auto tag = tiff.number<quint16>(entry);
        if (!tag) {
            break;
        }
        if (*tag == orientationTag) {
            return fromTag(tiff.number<quint16>(entry + 8).value_or(1));
        }
    }
    return {};
}

} // namespace ExifOrientation
