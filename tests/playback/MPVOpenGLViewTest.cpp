#include "MPVOpenGLView.h"
#include "RecordingMPV.h"

#include <QElapsedTimer>
#include <QTest>

#include <memory>
#include <thread>

namespace {

mpv_handle *anyPlayer() {
    static int storage;
    return reinterpret_cast<mpv_handle *>(&storage);
}

const QStringList drawn{QStringLiteral("render OPENGL_FBO=64x48/0 FLIP_Y=1"), QStringLiteral("report_swap")};

} // namespace

/// What the view asks of the player, and when, against a recorded library.
class MPVOpenGLViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_mpv = std::make_unique<RecordingMPV>();
        m_view = std::make_unique<MPVOpenGLView>(m_mpv->functions());
        m_handled = 0;
        m_view->setFrameRenderedHandler([this] { ++m_handled; });
        QCOMPARE(m_view->configureWithMPV(anyPlayer()), 0);
        m_mpv->take();
    }

    void cleanup() {
        m_view.reset();
        m_mpv.reset();
    }

    void drawsAnnouncedFrames() {
        join();
        m_mpv->notify(); // nothing new
        QTest::qWait(10);
        QCOMPARE(m_mpv->take(), QStringList());

        m_mpv->framePending = true;
        std::thread([this] {
            for (int i = 0; i < 100; ++i) {
                m_mpv->notify();
            }
        }).join();
        QCOMPARE(m_mpv->take(), QStringList()); // nothing on the player's thread
        QTRY_COMPARE(m_handled, 1);
        QTest::qWait(10);
        QCOMPARE(m_mpv->take(), drawn); // once for all the notices

        m_view->setBackingSize({32, 24}); // a redraw shows no new frame
        QTRY_COMPARE(m_mpv->calls,
                     QStringList(drawn).replaceInStrings(QStringLiteral("64x48"), QStringLiteral("32x24")));
        QCOMPARE(m_handled, 1);
    }

    void drawsFramesWhenTheyAreDue_data() {
        QTest::addColumn<qint64>("dueIn");
        QTest::addColumn<int>("earliest");
        QTest::newRow("ahead") << qint64(40'900) << 39;
        QTest::newRow("late") << qint64(-3'000'000) << 0;
        QTest::newRow("so far ahead that it cannot be meant") << qint64(3'600'000'000) << 0;
    }

    void drawsFramesWhenTheyAreDue() {
        QFETCH(qint64, dueIn);
        QFETCH(int, earliest);
        join();
        QElapsedTimer clock;
        clock.start();
        announceFrame(dueIn);
        QTRY_COMPARE(m_mpv->calls, drawn);
        QVERIFY2(clock.elapsed() >= earliest, qPrintable(QString::number(clock.elapsed())));
    }

    void takesWaitingFramesBeforeItEnds() {
        m_mpv->framePending = true;
        m_mpv->events = {MPV_EVENT_IDLE, MPV_EVENT_START_FILE, MPV_EVENT_NONE, MPV_EVENT_END_FILE,
                         MPV_EVENT_IDLE};
        m_view->shutdownRenderContext();
        QVERIFY(m_mpv->events.isEmpty());
        QCOMPARE(m_mpv->take(),
                 (QStringList{QStringLiteral("clear_update_callback"), QStringLiteral("command_async stop"),
                              QStringLiteral("render SKIP_RENDERING=1 BLOCK_FOR_TARGET_TIME=0"),
                              QStringLiteral("report_swap"), QStringLiteral("render_context_free")}));
        m_view->consumeRenderUpdates(); // a late notice
        m_view.reset();
        QCOMPARE(m_mpv->calls, QStringList());
    }

private:
    /// Puts the view into a window, where it draws black until there is a frame.
    void join() {
        m_view->setBackingSize({64, 48});
        QTRY_COMPARE(m_mpv->calls, drawn);
        QTest::qWait(5);
        QCOMPARE(m_handled, 0); // the thumbnail stays until there is more than black to see
        m_mpv->take();
    }

    void announceFrame(int64_t dueIn = 0) {
        m_mpv->framePending = true;
        m_mpv->frameDueIn = dueIn;
        m_mpv->notify();
    }

    std::unique_ptr<RecordingMPV> m_mpv;
    std::unique_ptr<MPVOpenGLView> m_view;
    int m_handled = 0;
};

QTEST_MAIN(MPVOpenGLViewTest)
#include "MPVOpenGLViewTest.moc"
