#include "MPVOpenGLView.h"
#include "RecordingMPV.h"

#include <QElapsedTimer>
#include <QTest>

#include <thread>

namespace {

mpv_handle *anyPlayer() {
    static int storage;
    return reinterpret_cast<mpv_handle *>(&storage);
}

const QString rendered = QStringLiteral("render OPENGL_FBO=64x48/0 FLIP_Y=1");
const QString swapped = QStringLiteral("report_swap");

} // namespace

/// What the view asks of the player, and when, against a recorded library.
class MPVOpenGLViewTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void flipsRows_data();
    void flipsRows();
    void drawsAnnouncedFrames();
    void drawsFramesWhenTheyAreDue();
    void keepsFramesUntilItIsShown();
    void handsFramesToTheNextHost();
    void showsNothingBeforeTheFirstFrame();
    void drawsWithoutAPlayer();
    void takesWaitingFramesBeforeItEnds();
    void keepsItsPictureLayer();
    void collectsNotices();
};

void MPVOpenGLViewTest::flipsRows_data() {
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QByteArray>("flipped");
    QTest::newRow("one") << QByteArray("aaaa") << QByteArray("aaaa");
    QTest::newRow("two") << QByteArray("aaaabbbb") << QByteArray("bbbbaaaa");
    QTest::newRow("three") << QByteArray("aaaabbbbcccc") << QByteArray("ccccbbbbaaaa");
    QTest::newRow("four") << QByteArray("aaaabbbbccccdddd") << QByteArray("ddddccccbbbbaaaa");
}

void MPVOpenGLViewTest::flipsRows() {
    QFETCH(QByteArray, rows);
    QFETCH(QByteArray, flipped);
    flipRows(reinterpret_cast<uchar *>(rows.data()), 4, rows.size() / 4);
    QCOMPARE(rows, flipped);
}

void MPVOpenGLViewTest::drawsAnnouncedFrames() {
    RecordingMPV mpv;
    MPVOpenGLView view(mpv.functions());
    int handled = 0;
    view.setFrameRenderedHandler([&] { ++handled; });
    QCOMPARE(view.configureWithMPV(anyPlayer()), 0);
    view.setBackingSize({64, 48});
    QTest::qWait(10);
    mpv.take();
    handled = 0;

    mpv.notify(); // nothing new
    QTest::qWait(10);
    QCOMPARE(mpv.take(), QStringList());

    mpv.framePending = true;
    std::thread(([&] { mpv.notify(); })).join();
    QCOMPARE(mpv.take(), QStringList()); // nothing on the player's thread
    QTRY_COMPARE(handled, 1);
    QCOMPARE(mpv.take(), (QStringList{rendered, swapped}));

    mpv.take();
    view.setBackingSize({32, 24}); // a redraw shows no new frame
    QTRY_COMPARE(mpv.calls, (QStringList{QStringLiteral("render OPENGL_FBO=32x24/0 FLIP_Y=1"), swapped}));
    QCOMPARE(handled, 1);
}

void MPVOpenGLViewTest::drawsFramesWhenTheyAreDue() {
    RecordingMPV mpv;
    MPVOpenGLView view(mpv.functions());
    view.configureWithMPV(anyPlayer());
    view.setBackingSize({64, 48});
    QTest::qWait(10);
    mpv.take();
    QElapsedTimer clock;
    clock.start();
    mpv.framePending = true;
    mpv.frameDueIn = 40'900;
    mpv.notify();
    QTRY_COMPARE(mpv.calls, (QStringList{rendered, swapped}));
    QVERIFY2(clock.elapsed() >= 39, qPrintable(QString::number(clock.elapsed())));

    mpv.take();
    mpv.framePending = true;
    mpv.frameDueIn = -3'000'000; // late, or a clock that jumped: at once
    mpv.notify();
    QTRY_COMPARE(mpv.calls, (QStringList{rendered, swapped}));
    mpv.take();
    mpv.framePending = true;
    mpv.frameDueIn = 3'600'000'000; // so far ahead that it cannot be meant
    mpv.notify();
    QTRY_COMPARE(mpv.calls, (QStringList{rendered, swapped}));
}

void MPVOpenGLViewTest::keepsFramesUntilItIsShown() {
    RecordingMPV mpv;
    MPVOpenGLView view(mpv.functions());
    int handled = 0;
    view.setFrameRenderedHandler([&] { ++handled; });
    view.configureWithMPV(anyPlayer());
    mpv.take();
    mpv.framePending = true;
    mpv.notify();
    QTest::qWait(20);
    QCOMPARE(mpv.calls, QStringList());
    view.setBackingSize({64, 48});
    QTRY_COMPARE(handled, 1);
    QCOMPARE(mpv.take(), (QStringList{rendered, swapped}));
}

void MPVOpenGLViewTest::handsFramesToTheNextHost() {
    RecordingMPV mpv;
    MPVOpenGLView view(mpv.functions());
    int handled = 0;
    view.setFrameRenderedHandler([&] { ++handled; });
    view.configureWithMPV(anyPlayer());
    QObject first;
    QObject second;
    view.setHost(&first);
    view.setBackingSize({64, 48});
    mpv.framePending = true;
    mpv.notify();
    QTRY_COMPARE(handled, 1);
    mpv.take();

    view.setHost(&second);
    QTest::qWait(10);
    QCOMPARE(mpv.calls, QStringList());
    view.setBackingSize({64, 48}); // redrawn at once, though the player has nothing new
    QTRY_COMPARE(handled, 2);
    QCOMPARE(mpv.take(), (QStringList{rendered, swapped}));
}

void MPVOpenGLViewTest::showsNothingBeforeTheFirstFrame() {
    RecordingMPV mpv;
    MPVOpenGLView view(mpv.functions());
    int handled = 0;
    view.setFrameRenderedHandler([&] { ++handled; });
    view.configureWithMPV(anyPlayer());
    view.setBackingSize({64, 48});
    QTRY_VERIFY(mpv.calls.contains(swapped));
    QCOMPARE(handled, 0); // the thumbnail stays until there is more than black to see
}

void MPVOpenGLViewTest::drawsWithoutAPlayer() {
    RecordingMPV mpv;
    MPVOpenGLView view(mpv.functions());
    view.setBackingSize({64, 48});
    view.draw();
    view.setBackingSize({});
    view.draw();
    QCOMPARE(mpv.calls, QStringList());
}

void MPVOpenGLViewTest::takesWaitingFramesBeforeItEnds() {
    RecordingMPV mpv;
    {
        MPVOpenGLView view(mpv.functions());
        view.configureWithMPV(anyPlayer());
        mpv.take();
        mpv.framePending = true;
        view.shutdownRenderContext();
        QCOMPARE(mpv.take(),
                 (QStringList{QStringLiteral("clear_update_callback"), QStringLiteral("command_async stop"),
                              QStringLiteral("render SKIP_RENDERING=1 BLOCK_FOR_TARGET_TIME=0"), swapped,
                              QStringLiteral("render_context_free")}));
        view.consumeRenderUpdates(); // a late notice
    }
    QCOMPARE(mpv.calls, QStringList());
}

void MPVOpenGLViewTest::keepsItsPictureLayer() {
    RecordingMPV mpv;
    MPVOpenGLView view(mpv.functions());
    view.setPresentsFramesThroughLayer(false);
    QVERIFY(!view.videoFrameLayer());
    view.setPresentsFramesThroughLayer(true);
    const auto *layer = view.videoFrameLayer();
    QVERIFY(layer && !layer->hidden);
    view.setPresentsFramesThroughLayer(false);
    QVERIFY(view.videoFrameLayer() == layer && layer->hidden);
    view.setPresentsFramesThroughLayer(true);
    QVERIFY(view.videoFrameLayer() == layer && !layer->hidden);
}

void MPVOpenGLViewTest::collectsNotices() {
    RecordingMPV mpv;
    MPVOpenGLView view(mpv.functions());
    view.configureWithMPV(anyPlayer());
    view.setBackingSize({64, 48});
    QTest::qWait(10);
    mpv.take();
    mpv.framePending = true;
    for (int i = 0; i < 100; ++i) {
        mpv.notify();
    }
    QTRY_COMPARE(mpv.calls.count(rendered), 1);
    QTest::qWait(10);
    QCOMPARE(mpv.calls.count(rendered), 1);
}

QTEST_MAIN(MPVOpenGLViewTest)
#include "MPVOpenGLViewTest.moc"
