#include "FileAttributes.h"

#include "SystemError.h"

#include <QByteArray>
#include <QList>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

constexpr char accessList[] = "system.posix_acl_access";

/// What a file system answers that has no such notion.
bool isUnsupported(int error) {
    return error == EOPNOTSUPP || error == ENOSYS;
}

bool isDenied(int error) {
    return error == EPERM || error == EACCES || error == EINVAL;
}

/// Attributes that the user or a program of the user made. The others (labels, capabilities, what a file
/// system computes) belong to the system, which may refuse to take them over.
bool belongsToUser(const QByteArray &name) {
    return name.startsWith("user.") || name == accessList;
}

/// Runs a call that fills a buffer and reports its size, with as large a buffer as it needs.
template <typename Call>
std::error_code readWhole(QByteArray &buffer, Call call) {
    buffer.resize(1024);
    for (;;) {
        ssize_t size = call(buffer.data(), size_t(buffer.size()));
        if (size >= 0) {
            buffer.resize(size);
            return {};
        }
        // Larger, or grown since it was measured.
        if (errno != ERANGE || (size = call(nullptr, 0)) < 0) {
            return lastSystemError();
        }
        buffer.resize(size + 1024);
    }
}

std::error_code copyAttribute(int source, int target, const QByteArray &name) {
    QByteArray value;
    std::error_code error = readWhole(
        value, [&](char *data, size_t size) { return ::fgetxattr(source, name.constData(), data, size); });
    if (!error && ::fsetxattr(target, name.constData(), value.constData(), size_t(value.size()), 0) != 0) {
        error = lastSystemError();
    }
    const bool leftOut = isUnsupported(error.value()) || error.value() == ENODATA ||
                         (isDenied(error.value()) && !belongsToUser(name));
    return leftOut ? std::error_code() : error;
}

std::error_code copyExtendedAttributes(int source, int target) {
    QByteArray list;
    const std::error_code error =
        readWhole(list, [&](char *data, size_t size) { return ::flistxattr(source, data, size); });
    if (error && !isUnsupported(error.value())) {
        return error;
    }
    const QList<QByteArray> names = error ? QList<QByteArray>() : list.split('\0');
    // The folder may have given the new file a list of its own, which would let others in.
    if (!names.contains(accessList) && ::fremovexattr(target, accessList) != 0 && errno != ENODATA &&
        !isUnsupported(errno)) {
        return lastSystemError();
    }
    for (const QByteArray &name : names) {
        if (name.isEmpty()) {
            continue;
        }
        if (const std::error_code failed = copyAttribute(source, target, name)) {
            return failed;
        }
    }
    return {};
}

/// True when the target now has the source's owner and group.
bool copyOwner(const struct stat &source, int target) {
    struct stat made {};
    if (::fstat(target, &made) == 0 && made.st_uid == source.st_uid && made.st_gid == source.st_gid) {
        return true;
    }
    if (::fchown(target, source.st_uid, source.st_gid) == 0) {
        return true;
    }
    // Giving a file away takes a privilege; its group may still be one of the user's.
    [[maybe_unused]] const int groupOnly = ::fchown(target, uid_t(-1), source.st_gid);
    return false;
}

} // namespace

std::error_code copyFileAttributes(int source, const struct stat &sourceStatus, int target) {
    const mode_t keptBits = copyOwner(sourceStatus, target) ? mode_t(07777) : mode_t(01777);
    if (const std::error_code error = copyExtendedAttributes(source, target)) {
        return error;
    }
    if (::fchmod(target, sourceStatus.st_mode & keptBits) != 0 && errno != EPERM && !isUnsupported(errno)) {
        return lastSystemError();
    }
    const timespec times[] = {sourceStatus.st_atim, sourceStatus.st_mtim};
    if (::futimens(target, times) != 0 && errno != EPERM && !isUnsupported(errno)) {
        return lastSystemError();
    }
    return {};
}
