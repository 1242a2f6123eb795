#include "SourceFile.h"

#include "AtomicRename.h"
#include "SystemError.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace {

bool sameTime(const timespec &a, const timespec &b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool sameFile(const struct stat &a, const struct stat &b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

std::error_code statusAt(int folder, const QByteArray &name, struct stat &status) {
    return ::fstatat(folder, name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 ? std::error_code()
                                                                                  : lastSystemError();
}

/// Of a rename: some devices have none, and the longer name needs room that a removal does not.
bool canOnlyRemove(const std::error_code &error) {
    return error.value() == ENOSYS || error.value() == EOPNOTSUPP || error.value() == ENOSPC ||
           error.value() == EDQUOT;
}

} // namespace

std::shared_ptr<const FileDescriptor> SourceFolders::open(const FileURL &folder) {
    if (!m_folder || m_url != folder) {
        FileDescriptor opened =
            FileDescriptor::open(AT_FDCWD, folder.nativePath().constData(), O_PATH | O_DIRECTORY);
        m_folder = opened.isOpen() ? std::make_shared<const FileDescriptor>(std::move(opened)) : nullptr;
        m_url = folder;
    }
    return m_folder;
}

std::optional<SourceFile> SourceFile::find(const FileURL &url, SourceFolders &folders) {
    const QByteArray name = url.nativeName();
    std::shared_ptr<const FileDescriptor> folder = folders.open(url.deletingLastPathComponent());
    struct stat status {};
    if (!folder || statusAt(folder->get(), name, status)) {
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode)) {
        errno = EINVAL;
        return std::nullopt;
    }
    return SourceFile(std::move(folder), name, status);
}

std::error_code SourceFile::open() {
    // O_NONBLOCK: a pipe that took the name must not hold up the batch.
    m_file =
        FileDescriptor::open(folder(), m_name.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
    struct stat opened {};
    if (!m_file.isOpen() || ::fstat(m_file.get(), &opened) != 0) {
        return lastSystemError();
    }
    if (!S_ISREG(opened.st_mode) || !sameFile(opened, m_status)) {
        return systemError(ESTALE);
    }
    m_status = opened;
    return {};
}

std::error_code SourceFile::checkRemovable() const {
    return ::faccessat(folder(), ".", W_OK | X_OK, AT_EACCESS) == 0 ? std::error_code() : lastSystemError();
}

std::error_code SourceFile::compare(const struct stat &other, Compared compared) const {
    const bool sameContent = sameFile(other, m_status) && other.st_size == m_status.st_size &&
                             sameTime(other.st_mtim, m_status.st_mtim);
    // The change time also shows new attributes, and writes that set the modification time back.
    const bool same =
        sameContent && (compared == Compared::contentOnly || sameTime(other.st_ctim, m_status.st_ctim));
    return same ? std::error_code() : systemError(ESTALE);
}

std::error_code SourceFile::checkUnchanged() const {
    struct stat now {};
    const std::error_code error = statusAt(folder(), m_name, now);
    return error ? error : compare(now, Compared::everything);
}

std::error_code SourceFile::remove() const {
    if (const std::error_code error = checkUnchanged()) {
        return error;
    }
    // Taken out of the way first: between a look at a name and its removal another file could get the name
    // and would be removed unseen. What was taken under a name of our own stays what it is.
    const QByteArray hidden = passingName();
    if (::renameat(folder(), m_name.constData(), folder(), hidden.constData()) != 0) {
        const std::error_code error = lastSystemError();
        if (!canOnlyRemove(error)) {
            return error;
        }
        return ::unlinkat(folder(), m_name.constData(), 0) == 0 ? std::error_code() : lastSystemError();
    }
    const std::error_code error = removeHidden(hidden);
    if (error) {
        // By now the name may belong to yet another file; what was taken must not stay out of sight for that.
        QByteArray given;
        renameToFreeName(folder(), hidden, folder(), m_name, given);
    }
    return error;
}

std::error_code SourceFile::removeHidden(const QByteArray &hidden) const {
    struct stat taken {};
    std::error_code error = statusAt(folder(), hidden, taken);
    if (!error) {
        // Renaming it has set its change time.
        error = compare(taken, Compared::contentOnly);
    }
    if (!error && ::unlinkat(folder(), hidden.constData(), 0) != 0) {
        error = lastSystemError();
    }
    return error;
}

bool SourceFile::isInPlace() const {
    struct stat now {};
    return !statusAt(folder(), m_name, now) && sameFile(now, m_status);
}
