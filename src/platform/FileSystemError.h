#pragma once

#include "FileURL.h"

#include <QByteArray>
#include <QException>
#include <QString>

/// A failed access to the file system, told so that the user understands it. Travels through futures.
class FileSystemError : public QException {
public:
    enum class Attempt { read, create };

    /// The code is an errno value.
    FileSystemError(const FileURL &url, int code, Attempt attempt = Attempt::read);

    const FileURL &url() const { return m_url; }
    int code() const { return m_code; }
    /// One translated sentence with the file's name, for the error banner.
    const QString &message() const { return m_message; }

    const char *what() const noexcept override { return m_what.constData(); }
    void raise() const override { throw *this; }
    FileSystemError *clone() const override;

private:
    FileURL m_url;
    int m_code;
    QString m_message;
    QByteArray m_what;
};
