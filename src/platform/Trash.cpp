#include "Trash.h"

#include "AtomicRename.h"
#include "DiskSync.h"
#include "FileContent.h"
#include "NumberedName.h"
#include "SystemError.h"

#include <QDateTime>
#include <QRandomGenerator>

#include <set>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr size_t mostFilesAtOnce = 64;
constexpr char recordSuffix[] = ".trashinfo";
constexpr qsizetype longestTrashedName = longestFileName - qsizetype(sizeof recordSuffix - 1);
/// Names are numbered one by one at first; a trash full of files of one name is left by a leap.
constexpr qint64 mostConsecutiveNames = 64;
constexpr qint64 mostNames = 128;

QByteArray nameToTry(const QByteArray &name, qint64 n) {
    const qint64 number = n <= mostConsecutiveNames
                              ? n
                              : mostConsecutiveNames + 1 + qint64(QRandomGenerator::global()->generate());
    return numberedName(name, number, longestTrashedName);
}

/// What a trash keeps of a file that was at this path (absolute, or relative to the top of its mount).
QByteArray recordOf(const QByteArray &path) {
    return "[Trash Info]\nPath=" + path.toPercentEncoding("/") + "\nDeletionDate=" +
           QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")).toLatin1() + '\n';
}

/// Where the record says the file was. Read from the open folder, so that it is true even when a folder above
/// was renamed or is reached through a link. Empty when it cannot be told.
QByteArray recordedPath(const FileURL &file, const SourceFile &source, const TrashDirectory &trash) {
    const QByteArray folder = currentPath(source.folder());
    if (trash.top.isEmpty()) {
        return folder.isEmpty() ? file.nativePath()
                                : FileURL::directory(folder).appending(source.name()).nativePath();
    }
    const QByteArray prefix = trash.top.endsWith('/') ? trash.top : trash.top + '/';
    const QByteArray path = FileURL::directory(folder).appending(source.name()).nativePath();
    return !folder.isEmpty() && path.startsWith(prefix) ? path.mid(prefix.size()) : QByteArray();
}

} // namespace

Trash::Trash(Finished finished) : m_finished(std::move(finished)) {
    if (!TrashDirectory::hasHome()) {
        return;
    }
    const FileDescriptor home = TrashDirectory::openNearestToHome();
    m_homeMount = home.isOpen() ? mountIdentity(home.get()) : std::nullopt;
    if (!m_homeMount) {
        m_homeError = lastSystemError();
    }
}

Trash::~Trash() {
    for (Entry &entry : m_group) {
        dropRecord(entry);
    }
}

void Trash::add(const FileURL &file) {
    m_group.push_back(process(file));
    if (m_group.size() >= mostFilesAtOnce) {
        flush();
    }
}

Trash::Entry Trash::process(const FileURL &file) {
    Entry entry;
    entry.outcome.file = file;
    entry.source = SourceFile::find(file, m_sourceFolders);
    entry.trash = entry.source ? directoryFor(entry.source->folder()) : nullptr;
    if (!entry.trash) {
        entry.outcome.error = lastSystemError();
        return entry;
    }
    const QByteArray path = recordedPath(file, *entry.source, *entry.trash);
    if (path.isEmpty()) {
        entry.outcome.error = systemError(ESTALE);
        return entry;
    }
    entry.record = recordOf(path);
    entry.outcome.error = writeRecord(entry);
    return entry;
}

/// None on failure, with errno set.
const TrashDirectory *Trash::directoryFor(int folder) {
    const std::optional<MountIdentity> mount = mountIdentity(folder);
    if (!mount) {
        return nullptr;
    }
    std::optional<TrashDirectory> &directory = m_directories[*mount];
    if (!directory) {
        directory = openFor(folder, *mount);
    }
    return directory ? &*directory : nullptr;
}

std::optional<TrashDirectory> Trash::openFor(int folder, const MountIdentity &mount) const {
    if (m_homeError) {
        // Which files belong into the home trash is not known: none must end up elsewhere.
        errno = m_homeError.value();
        return std::nullopt;
    }
    if (mount == m_homeMount) {
        return TrashDirectory::openHome();
    }
    const FileDescriptor top = mountTop(folder);
    return top.isOpen() ? TrashDirectory::openOnMount(top.get(), ::geteuid()) : std::nullopt;
}

/// Reserves a name by the record that it makes exclusively.
std::error_code Trash::writeRecord(Entry &entry) {
    do {
        entry.name = nameToTry(entry.source->name(), ++entry.tried);
        const QByteArray recordName = entry.name + recordSuffix;
        entry.recordFile =
            FileDescriptor(::openat(entry.trash->info.get(), recordName.constData(),
                                    O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    } while (!entry.recordFile.isOpen() && errno == EEXIST && entry.tried < mostNames);
    if (!entry.recordFile.isOpen()) {
        return lastSystemError();
    }
    const std::error_code error =
        writeAll(entry.recordFile.get(), entry.record.constData(), entry.record.size(), 0);
    if (error) {
        dropRecord(entry);
    } else {
        // Begun for the whole group at once; fsync then finds little left to wait for.
        ::sync_file_range(entry.recordFile.get(), 0, 0, SYNC_FILE_RANGE_WRITE);
    }
    return error;
}

void Trash::dropRecord(Entry &entry) {
    if (entry.recordFile.isOpen()) {
        ::unlinkat(entry.trash->info.get(), QByteArray(entry.name + recordSuffix).constData(), 0);
        entry.recordFile.close();
    }
}

void Trash::flush() {
    std::map<const TrashDirectory *, std::error_code> directories;
    for (Entry &entry : m_group) {
        if (!entry.outcome.error) {
            entry.outcome.error = syncToDisk(entry.recordFile.get());
            directories[entry.trash];
        }
    }
    for (auto &[trash, error] : directories) {
        error = syncToDisk(trash->info.get());
    }
    for (Entry &entry : m_group) {
        std::error_code &error = entry.outcome.error;
        if (!error) {
            error = directories[entry.trash];
        }
        if (!error) {
            error = moveIn(entry);
        }
        if (error) {
            dropRecord(entry);
        }
        entry.recordFile.close();
        m_finished(entry.outcome);
    }
    m_group.clear();
}

std::error_code Trash::moveIn(Entry &entry) {
    for (;;) {
        std::error_code error = renameWithoutReplacing(entry.source->folder(), entry.source->name(),
                                                       entry.trash->files.get(), entry.name);
        if (error.value() != EEXIST) {
            return error;
        }
        // A file without a record has the name: the record has to take another one.
        dropRecord(entry);
        error = writeRecord(entry);
        if (!error) {
            error = syncToDisk(entry.recordFile.get());
        }
        if (!error) {
            error = syncToDisk(entry.trash->info.get());
        }
        if (error) {
            return error;
        }
    }
}
