#pragma once

#include <QByteArray>
#include <QMetaType>
#include <QObject>
#include <QString>

#include <optional>

/// The location of a file or folder on this machine.
///
/// Holds the path's bytes as the kernel knows them, so that every name that Linux allows (Latin-1, a newline,
/// 255 bytes) stays addressable. For display and for identity the bytes are read as UTF-8; a byte that is not
/// part of valid UTF-8 becomes the lone surrogate U+DC80 + (byte - 0x80), which makes the mapping reversible.
///
/// A value: copies share their bytes. Two URLs are equal when their paths are, whatever the directory mark.
class FileURL {
    Q_GADGET
    Q_PROPERTY(QString path READ path CONSTANT)
    Q_PROPERTY(QString lastPathComponent READ lastPathComponent CONSTANT)

public:
    FileURL() = default;

    /// From the bytes of an absolute path; a trailing slash marks a directory and is not kept.
    static FileURL fromNativePath(const QByteArray &path);
    static FileURL directory(const QByteArray &path);
    /// From path(), the reverse of the mapping above.
    static FileURL fromPath(const QString &path);
    /// From what the desktop or a command line hands over: a file URI (percent-encoded, host absent, empty or
    /// "localhost") or a plain path, made absolute against workingDirectory. None for another scheme or "".
    static std::optional<FileURL> fromArgument(const QByteArray &argument,
                                               const QByteArray &workingDirectory);

    bool isEmpty() const { return m_path.isEmpty(); }
    /// Bytes for the kernel.
    const QByteArray &nativePath() const { return m_path; }
    QString path() const { return decode(m_path); }
    QString lastPathComponent() const { return decode(nativeName()); }
    /// The last path component's bytes; "/" for the root.
    QByteArray nativeName() const;
    /// The text after the last dot of the last path component, without the dot. Empty when there is no dot,
    /// when the name ends with it, or when the only dot leads the name.
    QString pathExtension() const;
    FileURL deletingLastPathComponent() const;
    FileURL appending(const QByteArray &name) const;
    /// True when the URL was made as a directory's; says nothing about the disk.
    bool hasDirectoryPath() const { return m_directory; }
    /// "file://…" with every byte outside the unreserved set percent-encoded (RFC 8089).
    QByteArray uri() const;

    static QString decode(const QByteArray &bytes);
    static QByteArray encode(const QString &text);

    friend bool operator==(const FileURL &a, const FileURL &b) { return a.m_path == b.m_path; }
    friend size_t qHash(const FileURL &url, size_t seed = 0) noexcept { return qHash(url.m_path, seed); }

private:
    QByteArray m_path;
    bool m_directory = false;
};
