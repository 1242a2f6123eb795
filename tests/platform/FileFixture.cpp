#include "FileFixture.h"

#include <algorithm>
#include <memory>

#include <dirent.h>
#include <sys/stat.h>

namespace FileFixture {

namespace {

struct stat statusOf(const QByteArray &path) {
    // Stays empty when there is no such file.
    struct stat status {};
    [[maybe_unused]] const int result = ::lstat(path.constData(), &status);
    return status;
}

} // namespace

QByteArray read(const QByteArray &path) {
    const QByteArray content = MediaMaker::read(FileURL::fromNativePath(path));
    return S_ISREG(statusOf(path).st_mode) ? QByteArray("") + content : QByteArray();
}

bool makeDirectory(const QByteArray &path) {
    return ::mkdir(path.constData(), 0755) == 0;
}

bool exists(const QByteArray &path) {
    return statusOf(path).st_mode != 0;
}

mode_t modeOf(const QByteArray &path) {
    return statusOf(path).st_mode & 07777;
}

QByteArrayList names(const QByteArray &directory) {
    QByteArrayList found;
    const std::unique_ptr<DIR, int (*)(DIR *)> stream(::opendir(directory.constData()), ::closedir);
    while (const dirent *entry = stream ? ::readdir(stream.get()) : nullptr) {
        found.append(entry->d_name);
    }
    found.removeIf([](const QByteArray &name) { return name == "." || name == ".."; });
    std::sort(found.begin(), found.end());
    return found;
}

} // namespace FileFixture
