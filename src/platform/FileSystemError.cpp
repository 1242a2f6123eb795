#include "FileSystemError.h"

#include <QCoreApplication>

#include <cerrno>

namespace {

QString translated(const char *text) {
    return QCoreApplication::translate("FileSystemError", text);
}

QString creationSentence(const QString &name, int code) {
    switch (code) {
    case EEXIST:
        return translated(QT_TRANSLATE_NOOP("FileSystemError", "“%1” is already there.")).arg(name);
    case EACCES:
    case EPERM:
        return translated(
                   QT_TRANSLATE_NOOP("FileSystemError", "You do not have permission to make “%1” here."))
            .arg(name);
    default:
        return translated(QT_TRANSLATE_NOOP("FileSystemError", "“%1” could not be made: %2."))
            .arg(name, qt_error_string(code));
    }
}

QString readingSentence(const QString &name, int code) {
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

FileSystemError::FileSystemError(const FileURL &url, int code, Attempt attempt)
    : m_url(url), m_code(code),
      m_message(attempt == Attempt::create ? creationSentence(url.lastPathComponent(), code)
                                           : readingSentence(url.lastPathComponent(), code)),
      m_what(m_message.toUtf8()) {}

FileSystemError *FileSystemError::clone() const {
    return new FileSystemError(*this);
}
