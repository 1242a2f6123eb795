#pragma once

#include "FileURL.h"

/// A fresh folder, removed with everything below it: unlike QTemporaryDir whatever bytes the names are made
/// of and however deep the folders lie.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;
    ~TemporaryFolder();

    bool isValid() const { return !m_url.isEmpty(); }
    /// Free of links.
    const FileURL &url() const { return m_url; }
    const QByteArray &path() const { return m_url.nativePath(); }
    /// What lies at the relative path.
    FileURL at(const QByteArray &path) const { return m_url.appending(path); }
    /// Makes the folder at the relative path, and those above it. False on failure.
    bool makeFolder(const QByteArray &path) const;

private:
    FileURL m_url;
};
