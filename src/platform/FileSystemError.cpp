#include "FileSystemError.h"

#include <QCoreApplication>

#include <cerrno>

namespace {

QString sentence(const FileURL &url, int code) {
    const QString name = url.lastPathComponent();
    const auto translated = [](const char *text) {
        return QCoreApplication::translate("FileSystemError", text);
    };
    switch (code) {
    case ENOENT:
    case ESTALE:
        return translated(QT_TRANSLATE_NOOP("FileSystemError", "“%1” is no longer there.")).arg(name);
    case EACCES:
    case EPERM:
        return translated(QT_TRANSLATE_NOOP("FileSystemError", "You do not have permission to read “%1”."))
            .arg(name);
    case ENOTDIR:
        return translated(QT_TRANSLATE_NOOP("FileSystemError", "“%1” is not a folder.")).arg(name);
    default:
        return translated(QT_TRANSLATE_NOOP("FileSystemError", "“%1” could not be read: %2."))
            .arg(name, qt_error_string(code));
    }
}

} // namespace

FileSystemError::FileSystemError(const FileURL &url, int code)
    : m_url(url), m_code(code), m_message(sentence(url, code)), m_what(m_message.toUtf8()) {}

FileSystemError *FileSystemError::clone() const {
    return new FileSystemError(*this);
}
