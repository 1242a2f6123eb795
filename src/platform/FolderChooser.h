#pragma once

#include "FileURL.h"

#include <QFuture>
#include <QString>

#include <optional>

/// Lets the user choose one folder. Main thread; nothing blocks.
class FolderChooser {
public:
    virtual ~FolderChooser() = default;
    /// The chosen folder, or none when the user cancelled.
    virtual QFuture<std::optional<FileURL>> choose(const QString &title, const QString &prompt) = 0;
};
