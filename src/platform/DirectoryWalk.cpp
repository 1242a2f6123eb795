#include "DirectoryWalk.h"

#include "FileSystemError.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <limits>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_NOCTTY;
/// Folders that are open at once; those further up are opened again on the way back.
constexpr size_t maximumOpen = 32;

DirectoryEntry::Time timeOf(const statx_timestamp &stamp) {
    using Limits = std::numeric_limits<qint64>;
    constexpr qint64 second = 1'000'000'000;
    // What a file system may hold and 64 bits of nanoseconds may not (years before 1678 or after 2262).
    if (stamp.tv_sec <= Limits::min() / second) {
        return DirectoryEntry::Time(std::chrono::nanoseconds(Limits::min() + 1));
    }
    if (stamp.tv_sec >= Limits::max() / second) {
        return DirectoryEntry::Time(std::chrono::nanoseconds(Limits::max()));
    }
    return DirectoryEntry::Time(std::chrono::nanoseconds(stamp.tv_sec * second + stamp.tv_nsec));
}

DirectoryEntry::Type typeOf(unsigned mode) {
    if (S_ISDIR(mode)) {
        return DirectoryEntry::Type::directory;
    }
    return S_ISREG(mode) ? DirectoryEntry::Type::regularFile : DirectoryEntry::Type::other;
}

} // namespace

DirectoryWalk::DirectoryWalk(const FileURL &folder, Depth depth) : m_depth(depth) {
    const int links = depth == Depth::subtree ? O_NOFOLLOW : 0;
    Frame top;
    top.descriptor = FileDescriptor::open(AT_FDCWD, folder.nativePath().constData(), openFlags | links);
    auto names = top.descriptor.isOpen() ? list(top.descriptor.get()) : std::nullopt;
    if (!names) {
        throw FileSystemError(folder, errno);
    }
    top.names = std::move(*names);
    m_path = folder.nativePath();
    if (!m_path.endsWith('/')) {
        m_path += '/';
    }
    top.pathLength = m_path.size();
    m_frames.push_back(std::move(top));
}

std::optional<DirectoryEntry> DirectoryWalk::next() {
    if (m_descend) {
        descend();
    }
    while (!m_frames.empty()) {
        Frame &frame = m_frames.back();
        if (frame.at == frame.names.size()) {
            ascend();
            continue;
        }
        const char *name = frame.names.data() + frame.at;
        frame.at += std::strlen(name) + 1;
        DirectoryEntry entry = describe(frame, name);
        m_descend = m_depth == Depth::subtree && entry.type == DirectoryEntry::Type::directory;
        return entry;
    }
    return std::nullopt;
}

DirectoryEntry DirectoryWalk::describe(const Frame &frame, const char *name) {
    m_path.truncate(frame.pathLength);
    m_path += name;
    // Not shared with m_path, which the next entry changes.
    DirectoryEntry entry{.url = FileURL::fromNativePath(QByteArray(m_path.constData(), m_path.size())),
                         .created = {},
                         .modified = {}};
    constexpr unsigned mask = STATX_TYPE | STATX_SIZE | STATX_MTIME | STATX_BTIME;
    struct statx status {};
    if (::statx(frame.descriptor.get(), name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, mask, &status) != 0) {
        throw FileSystemError(entry.url, errno);
    }
    entry.type = typeOf(status.stx_mode);
    if ((status.stx_mask & STATX_SIZE) != 0) {
        entry.size = qint64(status.stx_size);
    }
    // Some file systems claim to know the birth time and say zero.
    if ((status.stx_mask & STATX_BTIME) != 0 &&
        (status.stx_btime.tv_sec != 0 || status.stx_btime.tv_nsec != 0)) {
        entry.created = timeOf(status.stx_btime);
    }
    if ((status.stx_mask & STATX_MTIME) != 0) {
        entry.modified = timeOf(status.stx_mtime);
    }
    return entry;
}

void DirectoryWalk::descend() {
    m_descend = false;
    const Frame &parent = m_frames.back();
    Frame child;
    child.descriptor = FileDescriptor::open(parent.descriptor.get(), m_path.constData() + parent.pathLength,
                                            openFlags | O_NOFOLLOW);
    auto names = child.descriptor.isOpen() ? list(child.descriptor.get()) : std::nullopt;
    if (!names || names->empty()) {
        return;
    }
    child.names = std::move(*names);
    m_path += '/';
    child.pathLength = m_path.size();
    m_frames.push_back(std::move(child));
    if (m_frames.size() > maximumOpen) {
        giveUpDescriptor();
    }
}

void DirectoryWalk::giveUpDescriptor() {
    Frame &frame = m_frames[m_frames.size() - 1 - maximumOpen];
    struct stat status {};
    if (frame.descriptor.isOpen() && ::fstat(frame.descriptor.get(), &status) == 0) {
        frame.device = status.st_dev;
        frame.inode = status.st_ino;
        frame.descriptor.close();
    }
}

void DirectoryWalk::ascend() {
    const FileDescriptor child = std::move(m_frames.back().descriptor);
    m_frames.pop_back();
    if (m_frames.empty() || m_frames.back().descriptor.isOpen()) {
        return;
    }
    Frame &parent = m_frames.back();
    parent.descriptor = FileDescriptor::open(child.get(), "..", openFlags);
    struct stat status {};
    const bool found = parent.descriptor.isOpen() && ::fstat(parent.descriptor.get(), &status) == 0;
    // The folder that we came from may have been moved elsewhere meanwhile.
    if (!found || status.st_dev != parent.device || status.st_ino != parent.inode) {
        throw FileSystemError(FileURL::directory(m_path.left(parent.pathLength)), found ? ESTALE : errno);
    }
}

std::optional<std::vector<char>> DirectoryWalk::list(int descriptor) {
    constexpr size_t bufferSize = 65536;
    alignas(dirent64) static thread_local std::array<char, bufferSize> buffer;
    std::vector<char> names;
    for (;;) {
        const ssize_t got = ::getdents64(descriptor, buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return std::nullopt;
        }
        if (got == 0) {
            return names;
        }
        for (ssize_t at = 0; at < got;) {
            const auto *record = reinterpret_cast<const dirent64 *>(buffer.data() + at);
            const char *name = &record->d_name[0];
            if (name[0] != '.') {
                names.insert(names.end(), name, name + std::strlen(name) + 1);
            }
            at += record->d_reclen;
        }
    }
}
