#pragma once

#include <utility>

/// Owns one open file descriptor. Movable; closed at the end of its life.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int fd) : m_fd(fd) {}
    FileDescriptor(FileDescriptor &&other) noexcept : m_fd(std::exchange(other.m_fd, -1)) {}
    FileDescriptor &operator=(FileDescriptor &&other) noexcept {
        if (this != &other) {
            close();
            m_fd = std::exchange(other.m_fd, -1);
        }
        return *this;
    }
    FileDescriptor(const FileDescriptor &) = delete;
    FileDescriptor &operator=(const FileDescriptor &) = delete;
    ~FileDescriptor() { close(); }

    bool isOpen() const { return m_fd >= 0; }
    /// The number for the kernel, -1 when nothing is open.
    int get() const { return m_fd; }
    void close() noexcept;
    /// Hands the descriptor over to whatever closes it from now on.
    int release() { return std::exchange(m_fd, -1); }

    /// Opens a path of any length relative to a directory (AT_FDCWD for absolute paths): one that is longer
    /// than the kernel takes at once is walked in pieces. Links are followed except in the last component,
    /// where O_NOFOLLOW in the flags decides. Close-on-exec. Not open on failure, with errno set.
    static FileDescriptor open(int directory, const char *path, int flags);

private:
    int m_fd = -1;
};
