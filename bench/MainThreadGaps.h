#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

class QQuickWindow;

/// Watches how long the thread that made it is away from its event loop, by the ticks of a 1 ms timer.
class MainThreadGaps : public QObject {
    Q_OBJECT

public:
    /// Gaps up to this long count as presence, in milliseconds.
    static constexpr double allowed = 8;

    struct Figures {
        /// In milliseconds.
        double longest = 0;
        double sumOverAllowed = 0;
        double watched = 0;

        void add(double gap);
        /// Of the watched time, the part spent in gaps longer than allowed.
        double share() const { return watched > 0 ? sumOverAllowed / watched : 0; }
    };

    MainThreadGaps();

    /// With a window, what its drawing takes of this thread is known, too: Qt's basic render loop draws here,
    /// and without a graphics processor that is most of a frame.
    void start(QQuickWindow *window = nullptr);
    /// The watch ends; what it saw stays.
    void stop();

    const Figures &figures() const { return m_all; }
    const Figures &withoutDrawing() const { return m_withoutDrawing; }
    /// Milliseconds of drawing on this thread since the start.
    double drawing() const { return m_drawing; }

private:
    void tick();

    QTimer m_timer;
    QElapsedTimer m_clock;
    QElapsedTimer m_frame;
    Figures m_all;
    Figures m_withoutDrawing;
    double m_drawing = 0;
    double m_drawingAtTick = 0;
};
