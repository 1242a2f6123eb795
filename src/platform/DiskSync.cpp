#include "DiskSync.h"

#include "SystemError.h"

#include <unistd.h>

std::error_code syncToDisk(int descriptor) {
    while (::fsync(descriptor) != 0) {
        // File systems that keep nothing back have nothing to wait for, and say so.
        if (errno == EINVAL || errno == EOPNOTSUPP || errno == ENOSYS) {
            return {};
        }
        if (errno != EINTR) {
            return lastSystemError();
        }
    }
    return {};
}
