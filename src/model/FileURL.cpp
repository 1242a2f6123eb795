#include "FileURL.h"

#include <QDir>

#include <algorithm>

namespace {

constexpr char16_t firstEscape = 0xDC80;
constexpr char16_t lastEscape = 0xDCFF;

/// Length of the valid UTF-8 sequence at the start of the text (RFC 3629), or 0.
qsizetype sequenceLength(const uchar *s, qsizetype left) {
    const auto continuation = [&](qsizetype i, uchar low = 0x80, uchar high = 0xBF) {
        return i < left && s[i] >= low && s[i] <= high;
    };
    const uchar lead = s[0];
    if (lead < 0x80) {
        return 1;
    }
    if (lead >= 0xC2 && lead <= 0xDF) {
        return continuation(1) ? 2 : 0;
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        const uchar low = lead == 0xE0 ? 0xA0 : 0x80;
        const uchar high = lead == 0xED ? 0x9F : 0xBF;
        return continuation(1, low, high) && continuation(2) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const uchar low = lead == 0xF0 ? 0x90 : 0x80;
        const uchar high = lead == 0xF4 ? 0x8F : 0xBF;
        return continuation(1, low, high) && continuation(2) && continuation(3) ? 4 : 0;
    }
    return 0;
}

/// The character of a valid sequence.
char32_t codePoint(const uchar *s, qsizetype length) {
    if (length == 1) {
        return s[0];
    }
    // The lead byte gives up one bit for each byte of the sequence and one more.
    char32_t point = s[0] & (0x7FU >> length);
    for (qsizetype i = 1; i < length; ++i) {
        point = point << 6 | (s[i] & 0x3FU);
    }
    return point;
}

bool isAscii(const QByteArray &bytes) {
    // Without a way out of the loop, so that it runs over many bytes at once.
    uchar all = 0;
    for (const char byte : bytes) {
        all |= uchar(byte);
    }
    return all < 0x80;
}

QByteArray normalized(QByteArray path) {
    while (path.size() > 1 && path.endsWith('/')) {
        path.chop(1);
    }
    return path;
}

/// What comes after the colon of "file:", as a path; none when it names another machine.
std::optional<QByteArray> pathOfFileURI(QByteArray rest) {
    if (rest.startsWith("//")) {
        const qsizetype slash = rest.indexOf('/', 2);
        const QByteArray host = slash < 0 ? rest.mid(2) : rest.mid(2, slash - 2);
        if (slash < 0 || (!host.isEmpty() && host.toLower() != "localhost")) {
            return std::nullopt;
        }
        rest = rest.mid(slash);
    }
    return QByteArray::fromPercentEncoding(rest);
}

/// The path that a URI or a plain path stands for, perhaps relative.
std::optional<QByteArray> localPath(const QByteArray &argument) {
    const qsizetype colon = argument.indexOf(':');
    const QByteArray scheme = argument.left(std::max<qsizetype>(colon, 0)).toLower();
    const QByteArray rest = argument.mid(colon + 1);
    if (scheme == "file" && rest.startsWith('/')) {
        return pathOfFileURI(rest);
    }
    const bool foreign = !scheme.isEmpty() && !scheme.contains('/') && rest.startsWith("//");
    return foreign ? std::nullopt : std::optional(argument);
}

} // namespace

QString FileURL::decode(const QByteArray &bytes) {
    if (isAscii(bytes)) {
        return QString::fromLatin1(bytes);
    }
    // Not QString::fromUtf8(), which drops a byte order mark and replaces what it does not know.
    QString text(bytes.size(), Qt::Uninitialized);
    const auto *s = reinterpret_cast<const uchar *>(bytes.constData());
    qsizetype length = 0;
    const auto put = [&](char32_t unit) { text[length++] = QChar(char16_t(unit)); };
    for (qsizetype at = 0; at < bytes.size();) {
        const qsizetype sequence = sequenceLength(s + at, bytes.size() - at);
        if (sequence == 0) {
            put(firstEscape + (s[at] - 0x80U));
            ++at;
            continue;
        }
        const char32_t point = codePoint(s + at, sequence);
        if (QChar::requiresSurrogates(point)) {
            put(QChar::highSurrogate(point));
            put(QChar::lowSurrogate(point));
        } else {
            put(point);
        }
        at += sequence;
    }
    text.truncate(length);
    return text;
}

QByteArray FileURL::encode(const QString &text) {
    QByteArray bytes;
    bytes.reserve(text.size());
    qsizetype at = 0;
    while (at < text.size()) {
        qsizetype end = at;
        while (end < text.size()) {
            const char16_t unit = text[end].unicode();
            const bool paired =
                unit >= firstEscape && unit <= lastEscape && end > at && text[end - 1].isHighSurrogate();
            if (unit >= firstEscape && unit <= lastEscape && !paired) {
                break;
            }
            ++end;
        }
        bytes += QStringView(text).mid(at, end - at).toUtf8();
        at = end;
        if (at < text.size()) {
            bytes += char(uchar(text[at].unicode() - firstEscape + 0x80));
            ++at;
        }
    }
    return bytes;
}

FileURL FileURL::fromNativePath(const QByteArray &path) {
    FileURL url;
    url.m_path = normalized(path);
    url.m_directory = path.endsWith('/');
    return url;
}

FileURL FileURL::directory(const QByteArray &path) {
    FileURL url = fromNativePath(path);
    url.m_directory = !url.isEmpty();
    return url;
}

FileURL FileURL::fromPath(const QString &path) {
    return fromNativePath(encode(path));
}

std::optional<FileURL> FileURL::fromArgument(const QByteArray &argument, const QByteArray &workingDirectory) {
    if (argument.isEmpty()) {
        return std::nullopt;
    }
    const auto local = localPath(argument);
    if (!local) {
        return std::nullopt;
    }
    QByteArray path = *local;
    if (path.contains('\0')) {
        return std::nullopt;
    }
    if (!path.startsWith('/')) {
        path = normalized(workingDirectory) + '/' + path;
    }
    const bool directory = path.endsWith('/');
    path = encode(QDir::cleanPath(decode(path)));
    return directory ? FileURL::directory(path) : fromNativePath(path);
}

QByteArray FileURL::nativeName() const {
    return m_path.size() == 1 ? m_path : m_path.mid(m_path.lastIndexOf('/') + 1);
}

QString FileURL::pathExtension() const {
    const QByteArray name = nativeName();
    const qsizetype dot = name.lastIndexOf('.');
    return dot <= 0 ? QString() : decode(name.mid(dot + 1));
}

FileURL FileURL::deletingLastPathComponent() const {
    if (isEmpty()) {
        return {};
    }
    const qsizetype slash = m_path.lastIndexOf('/');
    return directory(slash <= 0 ? QByteArray("/") : m_path.left(slash));
}

FileURL FileURL::appending(const QByteArray &name) const {
    return fromNativePath(m_path.endsWith('/') ? m_path + name : m_path + '/' + name);
}

QByteArray FileURL::uri() const {
    return "file://" + m_path.toPercentEncoding("/");
}
