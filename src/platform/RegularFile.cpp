#include "RegularFile.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

std::optional<RegularFile> RegularFile::open(const FileURL &url) {
    // O_NONBLOCK keeps the call from waiting for a pipe's other end; on regular files it has no effect.
    FileDescriptor descriptor = FileDescriptor::open(AT_FDCWD, url.nativePath().constData(),
                                                     O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_NOCTTY);
    struct stat status {};
    if (!descriptor.isOpen() || ::fstat(descriptor.get(), &status) != 0) {
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        errno = EINVAL;
        return std::nullopt;
    }
    return RegularFile(std::move(descriptor), status.st_size);
}

qint64 RegularFile::read(qint64 offset, void *target, qint64 length) const {
    qint64 done = 0;
    while (done < length) {
        const ssize_t got = ::pread(m_descriptor.get(), static_cast<char *>(target) + done,
                                    size_t(length - done), off_t(offset + done));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return -1;
        }
        if (got == 0) {
            break;
        }
        done += got;
    }
    return done;
}
