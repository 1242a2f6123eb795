#include "MainThreadGaps.h"

#include <QQuickWindow>
#include <QThread>

#include <algorithm>

namespace {

double milliseconds(const QElapsedTimer &clock) {
    return double(clock.nsecsElapsed()) * 1e-6;
}

} // namespace

void MainThreadGaps::Figures::add(double gap) {
    longest = std::max(longest, gap);
    watched += gap;
    if (gap > allowed) {
        sumOverAllowed += gap;
    }
}

MainThreadGaps::MainThreadGaps() {
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &MainThreadGaps::tick);
}

void MainThreadGaps::start(QQuickWindow *window) {
    m_all = {};
    m_withoutDrawing = {};
    m_drawing = m_drawingAtTick = 0;
    if (window != nullptr) {
        connect(
            window, &QQuickWindow::afterSynchronizing, this, [this] { m_frame.start(); },
            Qt::DirectConnection);
        connect(
            window, &QQuickWindow::frameSwapped, this,
            [this] {
                if (QThread::currentThread() == thread()) {
                    m_drawing += milliseconds(m_frame);
                }
            },
            Qt::DirectConnection);
    }
    m_clock.start();
    m_timer.start(1);
}

void MainThreadGaps::stop() {
    tick();
    m_timer.stop();
}

void MainThreadGaps::tick() {
    const double gap = milliseconds(m_clock);
    m_clock.start();
    m_all.add(gap);
    m_withoutDrawing.add(gap - (m_drawing - m_drawingAtTick));
    m_drawingAtTick = m_drawing;
}
