#include "DrawingTurns.h"

#include <QQuickWindow>

std::mutex &DrawingTurns::turn() {
    static std::mutex mutex;
    return mutex;
}

void DrawingTurns::join(QQuickWindow &window) {
    // The two come in pairs, also for a frame that fails. Without a video, or with a graphics processor,
    // nobody else ever wants the turn.
    QObject::connect(
        &window, &QQuickWindow::beforeFrameBegin, &window, [] { turn().lock(); }, Qt::DirectConnection);
    QObject::connect(
        &window, &QQuickWindow::afterFrameEnd, &window, [] { turn().unlock(); }, Qt::DirectConnection);
}
