#pragma once

#include "FileDescriptor.h"

#include <QByteArray>

#include <optional>

#include <sys/types.h>

/// An open trash directory of the freedesktop.org Trash specification 1.0: the trashed files, and for each of
/// them a record of where it came from.
struct TrashDirectory {
    FileDescriptor files;
    FileDescriptor info;
    /// Path, free of links, of the directory that the records' paths start from; empty in the home trash,
    /// whose records hold absolute paths.
    QByteArray top;

    /// $XDG_DATA_HOME/Trash, made when it is missing. None on failure, with errno set.
    static std::optional<TrashDirectory> openHome();
    /// False when the environment names no home.
    static bool hasHome();
    /// The nearest directory on the home trash's path that exists, for telling which mount it is on. Not
    /// open on failure, with errno set.
    static FileDescriptor openNearestToHome();
    /// The trash for files of one mount, given its open top directory: .Trash/$uid where an administrator
    /// has prepared .Trash (a directory of its own with the sticky bit), else .Trash-$uid. Both belong to
    /// the user alone; links in their place are not followed. None on failure, with errno set.
    static std::optional<TrashDirectory> openOnMount(int top, uid_t user);
};
