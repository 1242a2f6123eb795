#pragma once

#include "MediaMaker.h"
#include "TemporaryFolder.h"

#include <QByteArray>
#include <QByteArrayList>

#include <sys/types.h>

/// Short ways to make and look at files by the bytes of their paths.
namespace FileFixture {

inline bool write(const QByteArray &path, const QByteArray &content) {
    return MediaMaker::write(FileURL::fromNativePath(path), content);
}
/// Null when there is no such file or it is a link.
QByteArray read(const QByteArray &path);
bool makeDirectory(const QByteArray &path);
bool exists(const QByteArray &path);
/// The names in a directory, hidden ones included, in order.
QByteArrayList names(const QByteArray &directory);
/// Permission bits; 0 when there is no such file.
mode_t modeOf(const QByteArray &path);

} // namespace FileFixture
