#include "MountPoint.h"

#include <array>
#include <climits>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace {

struct Place {
    MountIdentity identity;
    quint64 inode = 0;
};

std::optional<Place> placeOf(int directory) {
    struct statx status {};
    if (::statx(directory, "", AT_EMPTY_PATH | AT_NO_AUTOMOUNT, STATX_INO | STATX_MNT_ID, &status) != 0) {
        return std::nullopt;
    }
    const bool tellsMount = (status.stx_mask & STATX_MNT_ID) != 0;
    return Place{.identity = {.device = makedev(status.stx_dev_major, status.stx_dev_minor),
                              .mount = tellsMount ? status.stx_mnt_id : 0},
                 .inode = status.stx_ino};
}

} // namespace

std::optional<MountIdentity> mountIdentity(int directory) {
    const std::optional<Place> place = placeOf(directory);
    return place ? std::optional(place->identity) : std::nullopt;
}

FileDescriptor mountTop(int directory) {
    FileDescriptor at = FileDescriptor::open(directory, ".", O_PATH | O_DIRECTORY);
    std::optional<Place> place = at.isOpen() ? placeOf(at.get()) : std::nullopt;
    while (place) {
        FileDescriptor above = FileDescriptor::open(at.get(), "..", O_PATH | O_DIRECTORY);
        const std::optional<Place> abovePlace = above.isOpen() ? placeOf(above.get()) : std::nullopt;
        const bool isRoot = abovePlace && abovePlace->inode == place->inode;
        if (abovePlace && (abovePlace->identity != place->identity || isRoot)) {
            return at;
        }
        at = std::move(above);
        place = abovePlace;
    }
    return {};
}

QByteArray currentPath(int descriptor) {
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    std::array<char, PATH_MAX + 1> path{};
    const ssize_t length = ::readlink(link.c_str(), path.data(), path.size());
    if (length <= 0 || size_t(length) == path.size() || path[0] != '/') {
        return {};
    }
    const QByteArray text(path.data(), length);
    // A removed directory has a path of the past, and one outside of this process's root none at all.
    struct stat named {};
    struct stat open {};
    const bool leadsBack = ::stat(text.constData(), &named) == 0 && ::fstat(descriptor, &open) == 0 &&
                           named.st_dev == open.st_dev && named.st_ino == open.st_ino;
    return leadsBack ? text : QByteArray();
}
