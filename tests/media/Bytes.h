#pragma once

#include <QByteArray>
#include <QtEndian>

/// Numbers as media formats write them, four bytes unless said otherwise.
namespace Bytes {

inline QByteArray little(qint64 value, int count = 4) {
    QByteArray bytes(sizeof value, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes.left(count);
}

inline QByteArray big(qint64 value, int count = 4) {
    QByteArray bytes(sizeof value, '\0');
    qToBigEndian(value, bytes.data());
    return bytes.right(count);
}

} // namespace Bytes
