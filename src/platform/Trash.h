#pragma once

#include "FileDescriptor.h"
#include "FileURL.h"
#include "MountPoint.h"
#include "SourceFile.h"
#include "TrashDirectory.h"

#include <QByteArray>

#include <functional>
#include <map>
#include <optional>
#include <system_error>
#include <vector>

/// Moves files to the trash of the freedesktop.org Trash specification 1.0, each on its own file system and
/// in one step, so that it can never be lost or half there. A file whose file system offers no usable trash
/// fails; nothing is ever copied into the home trash instead. One thread at a time; blocks as long as the
/// disk does.
///
/// The record of a file's origin is on the disk before the file moves, and is removed again when it does not.
/// Records reach the disk in groups, since a few waits together cost hardly more than one.
class Trash {
public:
    struct Outcome {
        FileURL file;
        std::error_code error;
    };
    /// Called once for each file, in the order they were added.
    using Finished = std::function<void(const Outcome &)>;

    explicit Trash(Finished finished);
    Trash(const Trash &) = delete;
    Trash &operator=(const Trash &) = delete;
    ~Trash();

    /// Files that are not regular ones fail.
    void add(const FileURL &file);
    /// Moves the files of the last group. Without it they stay where they are.
    void flush();

private:
    struct Entry {
        Outcome outcome;
        std::optional<SourceFile> source;
        const TrashDirectory *trash = nullptr;
        QByteArray record;
        /// The name in the trash, and how many names had been tried to find it.
        QByteArray name;
        qint64 tried = 0;
        /// The record while it is not known to be needed.
        FileDescriptor recordFile;
    };

    Entry process(const FileURL &file);
    const TrashDirectory *directoryFor(int folder);
    std::optional<TrashDirectory> openFor(int folder, const MountIdentity &mount) const;
    static std::error_code writeRecord(Entry &entry);
    static std::error_code moveIn(Entry &entry);
    static void dropRecord(Entry &entry);

    Finished m_finished;
    /// None without a home.
    std::optional<MountIdentity> m_homeMount;
    std::error_code m_homeError;
    std::map<MountIdentity, std::optional<TrashDirectory>> m_directories;
    SourceFolders m_sourceFolders;
    std::vector<Entry> m_group;
};
