#pragma once

#include <QByteArray>
#include <QByteArrayList>

/// Short ways to make and look at files by the bytes of their paths.
namespace FileFixture {

/// A directory that goes at the end of the object's life with all that is in it, whatever the names' bytes.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;
    ~TemporaryFolder();

    /// Free of links. Empty when none could be made.
    const QByteArray &path() const { return m_path; }

private:
    QByteArray m_path;
};

bool write(const QByteArray &path, const QByteArray &content);
/// Null when there is no such file.
QByteArray read(const QByteArray &path);
bool makeDirectory(const QByteArray &path);
bool exists(const QByteArray &path);
/// The names in a directory, hidden ones included, in order.
QByteArrayList names(const QByteArray &directory);
/// Bytes that differ from file to file and along the file.
QByteArray pattern(qsizetype size, char seed);

} // namespace FileFixture
