#pragma once

#include "FileURL.h"

#include <QList>
#include <QObject>

/// What the desktop asks of the program as a whole. Main thread.
class MosaAppDelegate : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Makes the program a normal one for the desktop, with its name and icon; before the first window.
    void applicationWillFinishLaunching();
    /// Folders or files to be opened. The first is announced as "MosaOpenFolder" in a later turn of the event
    /// loop, the others are ignored.
    void applicationOpen(const QList<FileURL> &urls);
    bool applicationShouldTerminateAfterLastWindowClosed() const { return true; }
};
