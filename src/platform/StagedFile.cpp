#include "StagedFile.h"

#include "AtomicRename.h"
#include "DiskSync.h"

#include <map>
#include <mutex>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::mutex growingMutex;

/// The hidden files that there are, with the folders that they lie in.
std::map<QByteArray, int> &growing() {
    static std::map<QByteArray, int> files;
    return files;
}

void forget(const QByteArray &name) {
    const std::scoped_lock lock(growingMutex);
    growing().erase(name);
}

} // namespace

std::unique_ptr<StagedFile> StagedFile::create(int folder) {
    const QByteArray name = passingName();
    FileDescriptor file(
        ::openat(folder, name.constData(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file.isOpen()) {
        return nullptr;
    }
    const std::scoped_lock lock(growingMutex);
    growing().emplace(name, folder);
    return std::unique_ptr<StagedFile>(new StagedFile(folder, name, std::move(file)));
}

StagedFile::~StagedFile() {
    if (!m_published) {
        withdraw();
    }
}

std::error_code StagedFile::sync() const {
    return syncToDisk(m_file.get());
}

std::error_code StagedFile::publish(const QByteArray &wantedName) {
    QByteArray taken;
    const std::error_code error = renameToFreeName(m_folder, m_name, m_folder, wantedName, taken);
    if (!error) {
        forget(m_name);
        m_name = taken;
        m_published = true;
    }
    return error;
}

void StagedFile::withdraw() {
    forget(m_name);
    struct stat ours {};
    struct stat named {};
    const bool isOurs = m_file.isOpen() && ::fstat(m_file.get(), &ours) == 0 &&
                        ::fstatat(m_folder, m_name.constData(), &named, AT_SYMLINK_NOFOLLOW) == 0 &&
                        ours.st_dev == named.st_dev && ours.st_ino == named.st_ino;
    if (isOurs) {
        ::unlinkat(m_folder, m_name.constData(), 0);
    }
    m_file.close();
}

void StagedFile::removeAll() {
    // Held meanwhile, so that the folders stay open.
    const std::scoped_lock lock(growingMutex);
    for (const auto &[name, folder] : growing()) {
        ::unlinkat(folder, name.constData(), 0);
    }
}
