#pragma once

#include "FileURL.h"
#include "MosaApp.h"

#include <QQuickWindow>

#include <functional>

class AppState;
class MediaPager;

/// The whole program in this process, driven as a user would: its window, its state, real key events. Main
/// thread; one a process, since the thumbnails in memory outlive it.
class Session {
public:
    /// Opens the window on the folder picker and returns once it is shown.
    Session();
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    AppState &state() const { return *m_state; }
    MediaPager &pager() const { return *m_pager; }
    QQuickWindow *window() const { return m_window; }

    void open(const FileURL &folder);
    void press(Qt::Key key);
    /// Moves the pointer over the page's cell of that index, wrapping round.
    void hover(int index);
    /// Moves the pointer off the window.
    void pointAway();
    /// Runs the event loop for a while.
    void wait(int milliseconds);
    /// A folder is shown, and every item of the page has its picture.
    bool isComplete() const;
    /// Runs the event loop until the condition holds and a frame drawn after that is on the screen.
    /// Milliseconds since the call; exits the process with a message after a minute.
    double untilPresented(const std::function<bool()> &condition);

private:
    MosaApp m_app;
    QQuickWindow *m_window = nullptr;
    AppState *m_state = nullptr;
    MediaPager *m_pager = nullptr;
};
