#pragma once

#include "FileDescriptor.h"
#include "FileURL.h"

#include <QtGlobal>

#include <chrono>
#include <optional>
#include <vector>

/// One entry of a folder with the attributes that a scan needs.
struct DirectoryEntry {
    enum class Type { directory, regularFile, other };
    using Time = std::chrono::sys_time<std::chrono::nanoseconds>;

    FileURL url;
    /// A link is `other`, whatever it leads to.
    Type type = Type::other;
    /// In bytes; -1 when unknown.
    qint64 size = -1;
    /// The birth time, on file systems that keep one.
    std::optional<Time> created;
    std::optional<Time> modified;
};

/// Lists a folder, or everything below it, entry by entry: one listing per folder and one statx per entry,
/// relative to the folder's descriptor, so that no length of path and no renaming on the way leads astray.
///
/// Hidden entries (a dot leads the name) are left out. Links are never followed below the folder itself.
/// A folder comes before what it holds. There are no packages on this desktop, that is, folders that stand
/// for one document: every folder is entered. However deep the folders lie, few descriptors are open.
class DirectoryWalk {
public:
    enum class Depth { entries, subtree };

    /// Throws FileSystemError when the folder cannot be listed. With Depth::entries the folder may be a link.
    DirectoryWalk(const FileURL &folder, Depth depth);

    /// The next entry, none at the end. Throws FileSystemError when its attributes cannot be read, as when it
    /// has vanished since its folder was listed. Folders below the first that cannot be listed are passed
    /// over.
    std::optional<DirectoryEntry> next();
    /// Leaves out what lies below the folder that next() has just returned.
    void skipDescendants() { m_descend = false; }

private:
    struct Frame {
        FileDescriptor descriptor;
        /// The names to come, each with its terminating zero, one after another.
        std::vector<char> names;
        size_t at = 0;
        /// Where the folder's own entries begin in m_path.
        qsizetype pathLength = 0;
        /// Known once the descriptor has been given up.
        quint64 device = 0;
        quint64 inode = 0;
    };

    void descend();
    void ascend();
    void giveUpDescriptor();
    DirectoryEntry describe(const Frame &frame, const char *name);
    static std::optional<std::vector<char>> list(int descriptor);

    Depth m_depth;
    std::vector<Frame> m_frames;
    /// The path of the innermost folder, with a trailing slash, then of the entry.
    QByteArray m_path;
    bool m_descend = false;
};
