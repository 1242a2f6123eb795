#pragma once

#include "FileDescriptor.h"

#include <QByteArray>

#include <memory>
#include <system_error>

/// A new file that grows under a hidden name, readable by its owner only, until it is whole and gets a name
/// of its own. Unless it got one it is removed at the end of its life. One thread at a time.
class StagedFile {
public:
    /// In an open folder that outlives the object. None on failure, with errno set.
    static std::unique_ptr<StagedFile> create(int folder);

    StagedFile(const StagedFile &) = delete;
    StagedFile &operator=(const StagedFile &) = delete;
    ~StagedFile();

    /// Open for reading and writing.
    int descriptor() const { return m_file.get(); }
    /// Waits until content and attributes are on the disk.
    std::error_code sync() const;
    /// Gives the file the first free one of the wanted name and its numbered successors.
    std::error_code publish(const QByteArray &wantedName);
    /// The published name, else the hidden one.
    const QByteArray &name() const { return m_name; }
    /// Removes the file after all, published or not. Another file that has the name by now stays.
    void withdraw();

    /// Removes every file that is still growing, in whichever thread: for the end of a program that does not
    /// wait for them any longer. None of them gets its name after that.
    static void removeAll();

private:
    StagedFile(int folder, QByteArray name, FileDescriptor file)
        : m_folder(folder), m_name(std::move(name)), m_file(std::move(file)) {}

    int m_folder;
    QByteArray m_name;
    FileDescriptor m_file;
    bool m_published = false;
};
