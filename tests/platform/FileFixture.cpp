#include "FileFixture.h"

#include <algorithm>
#include <filesystem>

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
    const bool isFile = S_ISREG(statusOf(path).st_mode);
    return isFile ? QByteArray("") + MediaMaker::read(FileURL::fromNativePath(path)) : QByteArray();
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
    std::error_code missing;
    for (const auto &entry : std::filesystem::directory_iterator(directory.toStdString(), missing)) {
        found.append(QByteArray::fromStdString(entry.path().filename().string()));
    }
    std::sort(found.begin(), found.end());
    return found;
}

} // namespace FileFixture
