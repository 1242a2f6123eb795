#include "FileDescriptor.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace {

FileDescriptor openPiece(int directory, const char *path, int flags) {
    int fd = -1;
    do {
        fd = ::openat(directory, path, flags | O_CLOEXEC);
    } while (fd < 0 && errno == EINTR);
    return FileDescriptor(fd);
}

} // namespace

void FileDescriptor::close() noexcept {
    if (m_fd >= 0) {
        const int error = errno;
        ::close(m_fd);
        m_fd = -1;
        errno = error;
    }
}

FileDescriptor FileDescriptor::open(int directory, const char *path, int flags) {
    FileDescriptor at;
    size_t length = std::strlen(path);
    while (length >= PATH_MAX) {
        // The longest piece that ends before a slash and still fits.
        size_t end = PATH_MAX - 1;
        while (end > 0 && path[end] != '/') {
            --end;
        }
        if (end == 0) {
            errno = ENAMETOOLONG;
            return {};
        }
        const std::string piece(path, end);
        at = openPiece(at.isOpen() ? at.get() : directory, piece.c_str(), O_PATH | O_DIRECTORY);
        if (!at.isOpen()) {
            return {};
        }
        while (path[end] == '/') {
            ++end;
        }
        path += end;
        length -= end;
    }
    return openPiece(at.isOpen() ? at.get() : directory, path, flags);
}
