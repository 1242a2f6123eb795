#include "NumberedName.h"

namespace {

bool continuesCharacter(char byte) {
    return (uchar(byte) & 0xC0) == 0x80;
}

/// The start of the text, at most `limit` bytes of it, without half a character at its end.
QByteArray shortened(const QByteArray &text, qsizetype limit) {
    if (text.size() <= limit) {
        return text;
    }
    constexpr qsizetype longestTail = 3;
    qsizetype end = limit;
    while (end > 0 && limit - end < longestTail && continuesCharacter(text[end])) {
        --end;
    }
    // No first byte within reach: these bytes are no UTF-8, and any of them is a boundary.
    return text.left(end == 0 || continuesCharacter(text[end]) ? limit : end);
}

} // namespace

QByteArray numberedName(const QByteArray &name, qint64 n, qsizetype limit) {
    const qsizetype dot = name.lastIndexOf('.');
    const bool hasExtension = dot > 0 && dot < name.size() - 1;
    QByteArray base = hasExtension ? name.left(dot) : name;
    QByteArray extension = hasExtension ? name.mid(dot) : QByteArray();
    const QByteArray number = n > 1 ? ' ' + QByteArray::number(n) : QByteArray();
    if (number.size() + extension.size() >= limit) {
        base = name;
        extension.clear();
    }
    return shortened(base, limit - number.size() - extension.size()) + number + extension;
}
