#pragma once

#include <QObject>
#include <QTimer>

#include <memory>

class QQuickWindow;

/// Asks for a window's next frame only once the last one is on the screen.
///
/// Where Qt draws a window in a thread of its own, the main thread hands the scene over for each frame, and
/// would wait for as long as that thread still draws the frame before: up to a refresh of the screen, more in
/// software. Here the request waits instead. It does so once: a window that draws all the time, as while a
/// video plays, holds up nobody for more than a frame, and a frame that never gets there for no more than a
/// moment.
///
/// Main thread; both ends of a frame are noted in the thread that draws.
class FramePacing : public QObject {
    Q_OBJECT

public:
    /// Before the window is shown. The window outlives this.
    explicit FramePacing(QQuickWindow &window);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct State;
    /// Also the window's, whose last frame may end while this goes.
    std::shared_ptr<State> m_state;
    QTimer m_patience;
};
