#include "FileFixture.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace FileFixture {

TemporaryFolder::TemporaryFolder() {
    std::error_code error;
    std::string path = std::filesystem::canonical(std::filesystem::temp_directory_path(error), error);
    path += "/mosa-test-XXXXXX";
    if (::mkdtemp(path.data()) != nullptr) {
        m_path = QByteArray::fromStdString(path);
    }
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code error;
    if (!m_path.isEmpty()) {
        std::filesystem::remove_all(m_path.toStdString(), error);
    }
}

bool write(const QByteArray &path, const QByteArray &content) {
    const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
    if (fd < 0) {
        return false;
    }
    qsizetype at = 0;
    ssize_t count = 1;
    while (at < content.size() && count > 0) {
        count = ::write(fd, content.constData() + at, size_t(content.size() - at));
        at += count;
    }
    return ::close(fd) == 0 && at == content.size();
}

QByteArray read(const QByteArray &path) {
    const int fd = ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0) {
        return {};
    }
    QByteArray content("");
    QByteArray buffer(1 << 16, Qt::Uninitialized);
    for (ssize_t count = 0; (count = ::read(fd, buffer.data(), size_t(buffer.size()))) > 0;) {
        content.append(buffer.constData(), count);
    }
    ::close(fd);
    return content;
}

bool makeDirectory(const QByteArray &path) {
    return ::mkdir(path.constData(), 0755) == 0;
}

bool exists(const QByteArray &path) {
    struct stat status {};
    return ::lstat(path.constData(), &status) == 0;
}

QByteArrayList names(const QByteArray &directory) {
    QByteArrayList found;
    const std::unique_ptr<DIR, int (*)(DIR *)> stream(::opendir(directory.constData()), ::closedir);
    while (stream) {
        const dirent *entry = ::readdir(stream.get());
        if (entry == nullptr) {
            break;
        }
        const QByteArray name(entry->d_name);
        if (name != "." && name != "..") {
            found.append(name);
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

QByteArray pattern(qsizetype size, char seed) {
    QByteArray bytes(size, Qt::Uninitialized);
    quint32 state = quint32(uchar(seed)) * 2654435761U + 1;
    for (char &byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = char(state >> 24);
    }
    return bytes;
}

} // namespace FileFixture
