#include "Subfolders.h"

#include "BackgroundTask.h"
#include "Collation.h"
#include "DirectoryStream.h"
#include "FileSystemError.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

namespace Subfolders {

namespace {

constexpr mode_t newFolderMode = 0777; // less the user's mask

FileDescriptor openDirectory(const FileURL &folder) {
    return FileDescriptor::open(AT_FDCWD, folder.nativePath().constData(), O_RDONLY | O_DIRECTORY);
}

/// The next entry, null at the end. Unlike the call itself it tells an error from the end.
const dirent *nextEntry(DIR *directory, const FileURL &folder) {
    errno = 0;
    const dirent *entry = readdir(directory);
    if (entry == nullptr && errno != 0) {
        throw FileSystemError(folder, errno);
    }
    return entry;
}

bool isFolder(DIR *directory, const dirent &entry) {
    if (std::strcmp(entry.d_name, ".") == 0 || std::strcmp(entry.d_name, "..") == 0) {
        return false;
    }
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) {
        return entry.d_type == DT_DIR;
    }
    struct stat status {};
    return fstatat(dirfd(directory), entry.d_name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

void sortByName(QList<FileURL> &folders) {
    const Collation collation;
    std::vector<std::pair<QByteArray, FileURL>> keyed;
    keyed.reserve(size_t(folders.size()));
    for (const FileURL &folder : folders) {
        keyed.emplace_back(collation.sortKey(folder.lastPathComponent()), folder);
    }
    std::stable_sort(keyed.begin(), keyed.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    std::transform(keyed.begin(), keyed.end(), folders.begin(), [](const auto &each) { return each.second; });
}

} // namespace

QFuture<QList<FileURL>> list(const FileURL &folder) {
    return BackgroundTask::run<QList<FileURL>>([folder](QPromise<QList<FileURL>> &promise) {
        const DirectoryStream directory = directoryStream(openDirectory(folder));
        if (!directory) {
            throw FileSystemError(folder, errno);
        }
        QList<FileURL> folders;
        while (const dirent *entry = nextEntry(directory.get(), folder)) {
            if (promise.isCanceled()) {
                return;
            }
            if (isFolder(directory.get(), *entry)) {
                folders.append(FileURL::directory(folder.appending(entry->d_name).nativePath()));
            }
        }
        sortByName(folders);
        promise.addResult(folders);
    });
}

QFuture<FileURL> create(const FileURL &parent, const QByteArray &name) {
    return BackgroundTask::run<FileURL>([parent, name](QPromise<FileURL> &promise) {
        const FileURL folder = FileURL::directory(parent.appending(name).nativePath());
        const FileDescriptor descriptor = openDirectory(parent);
        if (!descriptor.isOpen()) {
            throw FileSystemError(parent, errno);
        }
        if (mkdirat(descriptor.get(), name.constData(), newFolderMode) != 0) {
            throw FileSystemError(folder, errno, FileSystemError::Attempt::create);
        }
        promise.addResult(folder);
    });
}

} // namespace Subfolders
