#pragma once

#include "FileDescriptor.h"

#include <QByteArray>
#include <QtGlobal>

#include <optional>
#include <tuple>

#include <sys/types.h>

/// What two directories must have in common for a rename between them to work: the file system, and the place
/// where that is mounted.
struct MountIdentity {
    dev_t device = 0;
    /// Always 0 on kernels that do not tell.
    quint64 mount = 0;

    friend bool operator==(const MountIdentity &, const MountIdentity &) = default;
    friend bool operator<(const MountIdentity &a, const MountIdentity &b) {
        return std::tie(a.device, a.mount) < std::tie(b.device, b.mount);
    }
};

/// Of an open directory. None on failure, with errno set.
std::optional<MountIdentity> mountIdentity(int directory);

/// The top directory of the mount that an open directory lies on. Not open on failure, with errno set.
FileDescriptor mountTop(int directory);

/// The path, free of links, of an open file or directory as it is named now. Empty when it cannot be told.
QByteArray currentPath(int descriptor);
