#pragma once

#include "WindowFrame.h"

#include <QTimer>
#include <QWindow>

class Preferences;

/// Keeps a window's frame in the preferences under a name and brings it back. Main thread; the window owns
/// it.
class WindowFrameAutosave {
public:
    /// Without preferences nothing is kept.
    WindowFrameAutosave(QWindow &window, Preferences *preferences, QString name);

    /// Gives the window, not shown yet, its kept frame, or the first size in the middle of the screen.
    void restore(QSize firstSize);
    /// Writes the frame now. It is written by itself a moment after each change.
    void save();
    /// Takes the frame as the one to come back to: for before the window is enlarged, perhaps right after a
    /// change.
    void noteFrame();

private:
    QWindow &m_window;
    Preferences *m_preferences;
    QString m_name;
    /// The last frame while the window was neither maximised nor full screen.
    QRect m_normalFrame;
    QTimer m_timer;
};
