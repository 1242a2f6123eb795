#pragma once

#include "FileDescriptor.h"
#include "FileURL.h"

#include <QtGlobal>

#include <optional>

/// A regular file opened for reading, whatever the bytes or the length of its path. One thread at a time.
///
/// Opening never waits for a peer and never follows a link in the last component: a named pipe, a socket, a
/// device or a link in the file's place is refused.
class RegularFile {
public:
    /// None when there is no such file or it is not a regular one, with errno set.
    static std::optional<RegularFile> open(const FileURL &url);

    int descriptor() const { return m_descriptor.get(); }
    /// In bytes, as it was when the file was opened.
    qint64 size() const { return m_size; }
    /// Up to `length` bytes from the offset; fewer only at the end of the file. -1 when reading fails.
    qint64 read(qint64 offset, void *target, qint64 length) const;

private:
    RegularFile(FileDescriptor descriptor, qint64 size) : m_descriptor(std::move(descriptor)), m_size(size) {}

    FileDescriptor m_descriptor;
    qint64 m_size;
};
