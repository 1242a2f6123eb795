#include "FileContent.h"

#include "SystemError.h"

#include <algorithm>
#include <array>
#include <memory>

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// Between two looks at the stop request, and between two starts of writing to the disk.
constexpr qint64 chunkSize = qint64(16) << 20;
constexpr size_t bufferSize = size_t(256) << 10;

class ContentCopy {
public:
    ContentCopy(int source, int target, const StopRequest &stop)
        : m_source(source), m_target(target), m_stop(stop) {}

    std::error_code run(qint64 size);

private:
    std::error_code copyRange(qint64 from, qint64 to);
    std::error_code copyChunk(qint64 from, qint64 to);
    std::error_code copyThroughMemory(qint64 from, qint64 to);

    int m_source;
    int m_target;
    const StopRequest &m_stop;
    bool m_kernelCopies = true;
    std::unique_ptr<std::array<char, bufferSize>> m_buffer;
};

bool mayHaveHoles(int descriptor, qint64 size) {
    struct stat status {};
    constexpr qint64 blockUnit = 512;
    return ::fstat(descriptor, &status) != 0 || qint64(status.st_blocks) * blockUnit < size;
}

std::error_code ContentCopy::run(qint64 size) {
    if (size == 0 || ::ioctl(m_target, FICLONE, m_source) == 0) {
        return {};
    }
    const bool sparse = mayHaveHoles(m_source, size);
    for (qint64 at = 0; at < size;) {
        qint64 data = at;
        qint64 end = size;
        if (sparse) {
            data = ::lseek(m_source, at, SEEK_DATA);
            if (data < 0 && errno == ENXIO) {
                break;
            }
            // File systems that know no holes say so here; the rest is data then.
            data = std::max(data, at);
            const qint64 hole = ::lseek(m_source, data, SEEK_HOLE);
            end = hole > data ? std::min(hole, size) : size;
        }
        if (const std::error_code error = copyRange(data, end)) {
            return error;
        }
        at = end;
    }
    // A hole at the end is not written, only counted.
    return !sparse || ::ftruncate(m_target, size) == 0 ? std::error_code() : lastSystemError();
}

std::error_code ContentCopy::copyRange(qint64 from, qint64 to) {
    while (from < to) {
        if (m_stop && m_stop()) {
            return std::make_error_code(std::errc::operation_canceled);
        }
        const qint64 end = std::min(to, from + chunkSize);
        if (const std::error_code error = copyChunk(from, end)) {
            return error;
        }
        // Lets the disk work while the next chunk or file is read. A failure here comes back from fsync.
        ::sync_file_range(m_target, from, end - from, SYNC_FILE_RANGE_WRITE);
        from = end;
    }
    return {};
}

bool kernelCannotCopy(int error) {
    return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP || error == ETXTBSY;
}

std::error_code ContentCopy::copyChunk(qint64 from, qint64 to) {
    while (m_kernelCopies && from < to) {
        off_t readAt = from;
        off_t writeAt = from;
        const ssize_t count = ::copy_file_range(m_source, &readAt, m_target, &writeAt, size_t(to - from), 0);
        if (count > 0) {
            from += count;
        } else if (count == 0 || kernelCannotCopy(errno)) {
            // Some file systems report the end at once instead of an error: reading tells.
            m_kernelCopies = false;
        } else if (errno != EINTR) {
            return lastSystemError();
        }
    }
    return from < to ? copyThroughMemory(from, to) : std::error_code();
}

std::error_code ContentCopy::copyThroughMemory(qint64 from, qint64 to) {
    if (!m_buffer) {
        m_buffer = std::make_unique<std::array<char, bufferSize>>();
    }
    while (from < to) {
        const size_t wanted = std::min(size_t(to - from), m_buffer->size());
        const ssize_t count = ::pread(m_source, m_buffer->data(), wanted, from);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return lastSystemError();
        }
        if (count == 0) {
            return systemError(ESTALE);
        }
        if (const std::error_code error = writeAll(m_target, m_buffer->data(), count, from)) {
            return error;
        }
        from += count;
    }
    return {};
}

} // namespace

std::error_code writeAll(int target, const char *bytes, qint64 count, qint64 offset) {
    while (count > 0) {
        const ssize_t written = ::pwrite(target, bytes, size_t(count), offset);
        if (written < 0 && errno != EINTR) {
            return lastSystemError();
        }
        const qint64 advance = std::max<qint64>(written, 0);
        bytes += advance;
        offset += advance;
        count -= advance;
    }
    return {};
}

std::error_code copyFileContent(int source, int target, qint64 size, const StopRequest &stop) {
    return ContentCopy(source, target, stop).run(size);
}
