#include "FramePacing.h"

#include <QCoreApplication>
#include <QEvent>
#include <QQuickWindow>
#include <QThread>

#include <mutex>
#include <utility>

namespace {

/// Longer than drawing takes: a frame that never gets to the screen must not be the last.
constexpr std::chrono::milliseconds patience{250};

} // namespace

struct FramePacing::State {
    std::mutex mutex;
    bool drawing = false;
    /// A request came meanwhile.
    bool waiting = false;
    /// The next request has waited already.
    bool due = false;

    /// Any thread.
    void letPass(QQuickWindow &window) {
        const std::scoped_lock lock(mutex);
        drawing = false;
        if (std::exchange(waiting, false)) {
            due = true;
            QCoreApplication::postEvent(&window, new QEvent(QEvent::UpdateRequest));
        }
    }
};

FramePacing::FramePacing(QQuickWindow &window) : m_state(std::make_shared<State>()) {
    window.installEventFilter(this);
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    m_patience.callOnTimeout(this, [state = m_state, &window] { state->letPass(window); });
    const auto begin = [state = m_state, &window] {
        // What is drawn in the main thread keeps nobody waiting there, and not each such frame is shown.
        const std::scoped_lock lock(state->mutex);
        state->drawing = QThread::currentThread() != window.thread();
    };
    const auto end = [state = m_state, &window] { state->letPass(window); };
    connect(&window, &QQuickWindow::beforeRendering, &window, begin, Qt::DirectConnection);
    connect(&window, &QQuickWindow::frameSwapped, &window, end, Qt::DirectConnection);
}

bool FramePacing::eventFilter(QObject *, QEvent *event) {
    if (event->type() != QEvent::UpdateRequest) {
        return false;
    }
    const std::scoped_lock lock(m_state->mutex);
    const bool due = std::exchange(m_state->due, false);
    m_state->waiting = m_state->drawing && !due;
    if (m_state->waiting && !m_patience.isActive()) {
        m_patience.start();
    }
    return m_state->waiting;
}
