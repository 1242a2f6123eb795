#include "DrawingTurns.h"

#include <QQuickWindow>

#include <memory>

std::timed_mutex &DrawingTurns::turn() {
    static std::timed_mutex mutex;
    return mutex;
}

void DrawingTurns::join(QQuickWindow &window) {
    // Without a video, or with a graphics processor, nobody else ever wants the turn. The two signals come in
    // pairs, also for a frame that fails; all the same, a turn that was not taken must not be given back.
    const auto held = std::make_shared<std::unique_lock<std::timed_mutex>>(turn(), std::defer_lock);
    const auto take = [held] {
        if (!held->owns_lock()) {
            held->lock();
        }
    };
    const auto giveBack = [held] {
        if (held->owns_lock()) {
            held->unlock();
        }
    };
    QObject::connect(&window, &QQuickWindow::beforeFrameBegin, &window, take, Qt::DirectConnection);
    QObject::connect(&window, &QQuickWindow::afterFrameEnd, &window, giveBack, Qt::DirectConnection);
}
