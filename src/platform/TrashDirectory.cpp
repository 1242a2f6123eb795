#include "TrashDirectory.h"

#include "MountPoint.h"

#include <QList>
#include <QtGlobal>

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t privateMode = 0700;
constexpr int readableDirectory = O_RDONLY | O_DIRECTORY;

/// The absolute path of the user's data, without a trailing slash. Empty without a home.
QByteArray dataHome() {
    QByteArray set = qgetenv("XDG_DATA_HOME");
    if (set.startsWith('/')) {
        return set;
    }
    const QByteArray home = qgetenv("HOME");
    return home.startsWith('/') ? home + "/.local/share" : QByteArray();
}

/// Opens a directory by its name, made when it is missing.
FileDescriptor openOrMake(int parent, const QByteArray &name, int flags) {
    FileDescriptor opened = FileDescriptor::open(parent, name.constData(), flags);
    if (opened.isOpen() || errno != ENOENT ||
        (::mkdirat(parent, name.constData(), privateMode) != 0 && errno != EEXIST)) {
        return opened;
    }
    return FileDescriptor::open(parent, name.constData(), flags);
}

/// A path's components, one by one, as deep as they exist or, with `make`, all of them.
FileDescriptor walk(const QByteArray &path, bool make) {
    FileDescriptor at = FileDescriptor::open(AT_FDCWD, "/", O_PATH | O_DIRECTORY);
    for (const QByteArray &component : path.split('/')) {
        if (component.isEmpty() || !at.isOpen()) {
            continue;
        }
        FileDescriptor next =
            make ? openOrMake(at.get(), component, O_PATH | O_DIRECTORY)
                 : FileDescriptor::open(at.get(), component.constData(), O_PATH | O_DIRECTORY);
        if (!next.isOpen() && !make && errno == ENOENT) {
            break;
        }
        at = std::move(next);
    }
    return at;
}

std::optional<TrashDirectory> openInside(int trash, QByteArray top, int linkFlag) {
    TrashDirectory made{
        .files = openOrMake(trash, "files", readableDirectory | linkFlag), .info = {}, .top = std::move(top)};
    if (made.files.isOpen()) {
        made.info = openOrMake(trash, "info", readableDirectory | linkFlag);
    }
    return made.files.isOpen() && made.info.isOpen() ? std::optional(std::move(made)) : std::nullopt;
}

bool isSticky(int directory) {
    struct stat status {};
    return ::fstat(directory, &status) == 0 && (status.st_mode & S_ISVTX) != 0;
}

bool belongsTo(int directory, uid_t user) {
    struct stat status {};
    return ::fstat(directory, &status) == 0 && status.st_uid == user;
}

std::optional<TrashDirectory> openOwned(int parent, const QByteArray &name, uid_t user,
                                        const QByteArray &top) {
    const FileDescriptor trash = openOrMake(parent, name, readableDirectory | O_NOFOLLOW);
    if (!trash.isOpen()) {
        return std::nullopt;
    }
    if (!belongsTo(trash.get(), user)) {
        errno = EACCES;
        return std::nullopt;
    }
    return openInside(trash.get(), top, O_NOFOLLOW);
}

} // namespace

std::optional<TrashDirectory> TrashDirectory::openHome() {
    const QByteArray home = dataHome();
    if (home.isEmpty()) {
        errno = ENOENT;
        return std::nullopt;
    }
    // Links are followed: in the user's own home they are the user's own wish.
    const FileDescriptor trash = walk(home + "/Trash", true);
    return trash.isOpen() ? openInside(trash.get(), {}, 0) : std::nullopt;
}

bool TrashDirectory::hasHome() {
    return !dataHome().isEmpty();
}

FileDescriptor TrashDirectory::openNearestToHome() {
    return walk(dataHome() + "/Trash/files", false);
}

std::optional<TrashDirectory> TrashDirectory::openOnMount(int top, uid_t user) {
    const QByteArray path = currentPath(top);
    if (path.isEmpty()) {
        errno = ENOENT;
        return std::nullopt;
    }
    const QByteArray number = QByteArray::number(user);
    const FileDescriptor shared = FileDescriptor::open(top, ".Trash", O_PATH | O_DIRECTORY | O_NOFOLLOW);
    if (shared.isOpen() && isSticky(shared.get())) {
        if (std::optional<TrashDirectory> trash = openOwned(shared.get(), number, user, path)) {
            return trash;
        }
    }
    return openOwned(top, ".Trash-" + number, user, path);
}
