#include "MainThreadGaps.h"

#include <algorithm>

MainThreadGaps::MainThreadGaps() {
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &MainThreadGaps::tick);
}

void MainThreadGaps::start() {
    m_longest = m_sum = m_total = 0;
    m_clock.start();
    m_timer.start(1);
}

void MainThreadGaps::stop() {
    tick();
    m_timer.stop();
}

void MainThreadGaps::tick() {
    const double gap = double(m_clock.nsecsElapsed()) * 1e-6;
    m_clock.start();
    m_longest = std::max(m_longest, gap);
    m_total += gap;
    if (gap > allowed) {
        m_sum += gap;
    }
}
