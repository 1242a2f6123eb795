#include "FramePacing.h"

#include <QCoreApplication>
#include <QQuickWindow>
#include <QTest>

#include <thread>

class FramePacingTest : public QObject {
    Q_OBJECT

public:
    bool eventFilter(QObject *, QEvent *event) override {
        m_arrived += event->type() == QEvent::UpdateRequest ? 1 : 0;
        return false;
    }

private Q_SLOTS:
    void init() {
        m_window = std::make_unique<QQuickWindow>();
        m_window->installEventFilter(this);
        m_pacing = std::make_unique<FramePacing>(*m_window);
        m_arrived = 0;
    }

    void letsRequestsPassBetweenFrames() {
        QCOMPARE(arrivedAfterRequest(), 1);
        begin();
        end();
        QCOMPARE(arrivedAfterRequest(), 2);
        QCoreApplication::processEvents();
        QCOMPARE(m_arrived, 2);
    }

    void holdsRequestsUntilTheFrameIsShown() {
        begin();
        QCOMPARE(arrivedAfterRequest(), 0);
        QCOMPARE(arrivedAfterRequest(), 0);
        end();
        QCOMPARE(m_arrived, 0);
        QCoreApplication::processEvents();
        QCOMPARE(m_arrived, 1);
    }

    void waitsForALostFrameInVainOnlyForAMoment() {
        begin();
        QCOMPARE(arrivedAfterRequest(), 0);
        QTRY_COMPARE(m_arrived, 1);
    }

    /// Where the main thread draws itself, some frames are not shown.
    void leavesFramesOfTheMainThreadAlone() {
        Q_EMIT m_window->beforeRendering();
        QCOMPARE(arrivedAfterRequest(), 1);
    }

    /// Frame follows upon frame.
    void holdsARequestOnlyOnce() {
        begin();
        QCOMPARE(arrivedAfterRequest(), 0);
        end();
        begin();
        QCoreApplication::processEvents();
        QCOMPARE(m_arrived, 1);
        QCOMPARE(arrivedAfterRequest(), 1);
    }

private:
    void begin() {
        std::thread([this] { Q_EMIT m_window->beforeRendering(); }).join();
    }
    void end() {
        std::thread([this] { Q_EMIT m_window->frameSwapped(); }).join();
    }

    int arrivedAfterRequest() {
        QEvent request(QEvent::UpdateRequest);
        QCoreApplication::sendEvent(m_window.get(), &request);
        return m_arrived;
    }

    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<FramePacing> m_pacing;
    int m_arrived = 0;
};

QTEST_MAIN(FramePacingTest)
#include "FramePacingTest.moc"
