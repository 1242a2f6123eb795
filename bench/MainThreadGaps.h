#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

/// Watches how long the thread that made it is away from its event loop, by the ticks of a 1 ms timer.
class MainThreadGaps : public QObject {
    Q_OBJECT

public:
    /// Gaps up to this long count as presence, in milliseconds.
    static constexpr double allowed = 8;

    MainThreadGaps();

    void start();
    /// The watch ends; what it saw stays.
    void stop();

    /// In milliseconds.
    double longest() const { return m_longest; }
    /// Of the watched time, the part spent in gaps longer than allowed.
    double share() const { return m_total > 0 ? m_sum / m_total : 0; }

private:
    void tick();

    QTimer m_timer;
    QElapsedTimer m_clock;
    double m_longest = 0;
    double m_sum = 0;
    double m_total = 0;
};
