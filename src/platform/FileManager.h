#pragma once

#include "FileURL.h"

class QUrl;

/// Hands files and addresses to other programs of the desktop. Main thread; returns at once, and what fails
/// fails silently, as the desktop has its own ways to say so.
class FileManager {
public:
    virtual ~FileManager() = default;
    /// Shows the file, selected, in the desktop's file manager; its folder where that cannot be done.
    virtual void showInFileManager(const FileURL &url) = 0;
    virtual void openInDefaultApp(const FileURL &url) = 0;
    /// A page to be read, here or on the web, or a mail to be written.
    virtual void openUrl(const QUrl &url) = 0;
};
