#include "FramePacing.h"

#include <QCoreApplication>
#include <QQuickWindow>
#include <QTest>

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
        Q_EMIT m_window->beforeRendering();
        Q_EMIT m_window->frameSwapped();
        QCOMPARE(arrivedAfterRequest(), 2);
        QCoreApplication::processEvents();
        QCOMPARE(m_arrived, 2);
    }

    void holdsRequestsUntilTheFrameIsShown() {
        Q_EMIT m_window->beforeRendering();
        QCOMPARE(arrivedAfterRequest(), 0);
        QCOMPARE(arrivedAfterRequest(), 0);
        Q_EMIT m_window->frameSwapped();
        QCOMPARE(m_arrived, 0);
        QCoreApplication::processEvents();
        QCOMPARE(m_arrived, 1);
    }

    /// Frame follows upon frame.
    void holdsARequestOnlyOnce() {
        Q_EMIT m_window->beforeRendering();
        QCOMPARE(arrivedAfterRequest(), 0);
        Q_EMIT m_window->frameSwapped();
        Q_EMIT m_window->beforeRendering();
        QCoreApplication::processEvents();
        QCOMPARE(m_arrived, 1);
        QCOMPARE(arrivedAfterRequest(), 1);
    }

private:
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
