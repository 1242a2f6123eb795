#include "FileTransfer.h"

#include "AtomicRename.h"
#include "DiskSync.h"
#include "FileAttributes.h"
#include "SystemError.h"

#include <fcntl.h>

namespace {

constexpr size_t mostFilesInGroup = 16;
constexpr qint64 mostBytesInGroup = qint64(64) << 20;

} // namespace

FileTransfer::FileTransfer(FileURL folder, FileOperationKind kind, Finished finished, StopRequest stop)
    : m_folderUrl(std::move(folder)), m_kind(kind), m_finished(std::move(finished)), m_stop(std::move(stop)),
      // Opened once: all files go to the folder that the user chose, whatever gets its name meanwhile.
      m_folder(FileDescriptor::open(AT_FDCWD, m_folderUrl.nativePath().constData(), O_RDONLY | O_DIRECTORY)) {
    if (!m_folder.isOpen()) {
        m_folderError = lastSystemError();
    }
}

void FileTransfer::add(const FileURL &source) {
    m_group.push_back(process(source));
    const Entry &entry = m_group.back();
    if (entry.staged) {
        m_groupSize += entry.source->status().st_size;
    }
    const bool nothingWaits = m_group.size() == 1 && !entry.staged;
    if (nothingWaits || m_group.size() >= mostFilesInGroup || m_groupSize >= mostBytesInGroup) {
        flush();
    }
}

FileTransfer::Entry FileTransfer::process(const FileURL &url) {
    Entry entry{
        .outcome = {.source = url, .destination = {}, .error = m_folderError}, .source = {}, .staged = {}};
    if (entry.outcome.error) {
        return entry;
    }
    entry.source = SourceFile::find(url, m_sourceFolders);
    if (!entry.source) {
        entry.outcome.error = lastSystemError();
    } else if (m_kind == FileOperationKind::copy || !tryRename(entry)) {
        entry.outcome.error = stage(entry);
        if (entry.outcome.error) {
            entry.staged.reset();
        }
    }
    return entry;
}

/// Moves the file in one step. False when that takes a copy, because the folder is on another file system.
bool FileTransfer::tryRename(Entry &entry) const {
    QByteArray name;
    const SourceFile &source = *entry.source;
    entry.outcome.error =
        renameToFreeName(source.folder(), source.name(), m_folder.get(), source.name(), name);
    entry.outcome.destination = m_folderUrl.appending(name);
    return entry.outcome.error.value() != EXDEV;
}

std::error_code FileTransfer::stage(Entry &entry) const {
    SourceFile &source = *entry.source;
    if (m_kind == FileOperationKind::move) {
        // Better known before gigabytes are copied.
        if (const std::error_code error = source.checkRemovable()) {
            return error;
        }
    }
    if (const std::error_code error = source.open()) {
        return error;
    }
    entry.staged = StagedFile::create(m_folder.get());
    if (!entry.staged) {
        return lastSystemError();
    }
    const int target = entry.staged->descriptor();
    const std::error_code error =
        copyFileContent(source.descriptor(), target, source.status().st_size, m_stop);
    return error ? error : copyFileAttributes(source.descriptor(), source.status(), target);
}

void FileTransfer::flush() {
    bool anyPublished = false;
    for (Entry &entry : m_group) {
        if (entry.staged) {
            entry.outcome.error = publish(entry);
            anyPublished = anyPublished || !entry.outcome.error;
        }
    }
    const std::error_code folderError = anyPublished ? syncToDisk(m_folder.get()) : std::error_code();
    for (Entry &entry : m_group) {
        if (entry.staged) {
            finishEntry(entry, folderError);
        }
        m_finished(entry.outcome);
    }
    m_group.clear();
    m_groupSize = 0;
}

std::error_code FileTransfer::publish(Entry &entry) const {
    // Asked once more: a slow disk may take longer for a group than a program that ends may wait.
    std::error_code error =
        m_stop && m_stop() ? std::make_error_code(std::errc::operation_canceled) : entry.staged->sync();
    if (!error) {
        // A file that was written to while it was copied may be torn.
        error = entry.source->checkUnchanged();
    }
    if (!error) {
        error = entry.staged->publish(entry.source->name());
    }
    entry.outcome.destination = m_folderUrl.appending(entry.staged->name());
    return error;
}

void FileTransfer::finishEntry(Entry &entry, const std::error_code &folderError) const {
    std::error_code &error = entry.outcome.error;
    if (!error) {
        error = folderError;
    }
    if (!error && m_kind == FileOperationKind::move) {
        error = entry.source->remove();
    }
    // The copy of a file that could not be moved is kept only when it may be the last one.
    if (error && entry.source->isInPlace()) {
        entry.staged->withdraw();
    }
    entry.staged.reset();
    entry.source.reset();
}
