#include "FramePacing.h"

#include <QCoreApplication>
#include <QEvent>
#include <QQuickWindow>

#include <mutex>
#include <utility>

struct FramePacing::State {
    std::mutex mutex;
    bool drawing = false;
    /// A request came meanwhile.
    bool waiting = false;
    /// The next request has waited already.
    bool due = false;
};

FramePacing::FramePacing(QQuickWindow &window) : m_state(std::make_shared<State>()) {
    window.installEventFilter(this);
    const auto begin = [state = m_state] {
        const std::scoped_lock lock(state->mutex);
        state->drawing = true;
    };
    const auto end = [state = m_state, &window] {
        const std::scoped_lock lock(state->mutex);
        state->drawing = false;
        if (std::exchange(state->waiting, false)) {
            state->due = true;
            QCoreApplication::postEvent(&window, new QEvent(QEvent::UpdateRequest));
        }
    };
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
    return m_state->waiting;
}
