#pragma once

#include "FileContent.h"
#include "FileDescriptor.h"
#include "FileOperation.h"
#include "SourceFile.h"
#include "StagedFile.h"

#include <functional>
#include <memory>
#include <optional>
#include <system_error>
#include <vector>

/// Copies or moves files into one folder. One thread at a time; blocks as long as the disk does.
///
/// At every instant, the death of the process included, a file is whole at its old place or whole at its new
/// one, and nothing that is not whole has a real name: a move within a file system is one rename, everything
/// else grows under a hidden name, reaches the disk and only then gets its name; a moved original goes last.
/// Nothing is ever replaced: a taken name leads to the next number (numberedName). A file that fails keeps
/// its original and leaves nothing behind.
///
/// Files wait for the disk in small groups, since a few waits together cost hardly more than one.
class FileTransfer {
public:
    struct Outcome {
        FileURL source;
        /// Where the file is now; meaningful without an error.
        FileURL destination;
        std::error_code error;
    };
    /// Called once for each file, in the order they were added.
    using Finished = std::function<void(const Outcome &)>;

    /// Asked to stop, files fail within their content or before they wait for the disk.
    FileTransfer(FileURL folder, FileOperationKind kind, Finished finished, StopRequest stop);

    /// Files that are not regular ones fail.
    void add(const FileURL &source);
    /// Finishes the files of the last group. Without it they are dropped: their originals stay.
    void flush();

private:
    struct Entry {
        Outcome outcome;
        std::optional<SourceFile> source;
        std::unique_ptr<StagedFile> staged;
    };

    Entry process(const FileURL &url);
    bool tryRename(Entry &entry) const;
    std::error_code stage(Entry &entry) const;
    std::error_code publish(Entry &entry) const;
    void finishEntry(Entry &entry, const std::error_code &folderError) const;

    FileURL m_folderUrl;
    FileOperationKind m_kind;
    Finished m_finished;
    StopRequest m_stop;
    FileDescriptor m_folder;
    std::error_code m_folderError;
    SourceFolders m_sourceFolders;
    std::vector<Entry> m_group;
    qint64 m_groupSize = 0;
};
