#pragma once

#include "FileDescriptor.h"
#include "FileURL.h"

#include <sys/stat.h>

#include <memory>
#include <optional>
#include <system_error>

/// Keeps the folder of the last file open, since the next one mostly lies in it, too.
class SourceFolders {
public:
    /// None on failure, with errno set.
    std::shared_ptr<const FileDescriptor> open(const FileURL &folder);

private:
    FileURL m_url;
    std::shared_ptr<const FileDescriptor> m_folder;
};

/// A file of the user's that is about to be copied, moved or trashed, held by its folder and its name so that
/// renaming a folder above it changes nothing. One thread at a time.
class SourceFile {
public:
    /// Looks the file up without opening it. None for anything but a regular file, a link to one included,
    /// with errno set.
    static std::optional<SourceFile> find(const FileURL &url, SourceFolders &folders);

    int folder() const { return m_folder->get(); }
    const QByteArray &name() const { return m_name; }
    /// As find() saw it, later as open() did.
    const struct stat &status() const { return m_status; }
    int descriptor() const { return m_file.get(); }

    /// Opens the content for reading; fails when another file has taken the name since find().
    std::error_code open();
    /// Fails when the folder's rights alone already forbid to take the file away from it.
    std::error_code checkRemovable() const;
    /// Fails with ESTALE unless the open file still is what it was when it was opened: same name, content
    /// size, times and attributes.
    std::error_code checkUnchanged() const;
    /// Removes the file from its folder, if it is unchanged. Where files can be renamed no other file that
    /// takes the name meanwhile is removed; on failure the name is given back or, when it is taken, a
    /// numbered one.
    std::error_code remove() const;
    /// True when the file, changed or not, certainly still has its name.
    bool isInPlace() const;

private:
    SourceFile(std::shared_ptr<const FileDescriptor> folder, QByteArray name, const struct stat &status)
        : m_folder(std::move(folder)), m_name(std::move(name)), m_status(status) {}

    enum class Compared { everything, contentOnly };
    std::error_code compare(const struct stat &other, Compared compared) const;
    std::error_code removeHidden(const QByteArray &hidden) const;

    std::shared_ptr<const FileDescriptor> m_folder;
    QByteArray m_name;
    struct stat m_status;
    FileDescriptor m_file;
};
