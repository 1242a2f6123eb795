#pragma once

#include "FileDescriptor.h"

#include <memory>

#include <dirent.h>

struct DirectoryCloser {
    void operator()(DIR *directory) const { ::closedir(directory); }
};

/// An open directory to be read entry by entry.
using DirectoryStream = std::unique_ptr<DIR, DirectoryCloser>;

/// The stream of a directory, whose descriptor it takes over. Null on failure, with errno set; when nothing
/// is open, with errno as it was.
inline DirectoryStream directoryStream(FileDescriptor directory) {
    DirectoryStream stream(directory.isOpen() ? ::fdopendir(directory.get()) : nullptr);
    if (stream) {
        directory.release();
    }
    return stream;
}
