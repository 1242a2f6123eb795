#include "MPVPlayerController.h"
#include "MPVOpenGLView.h"
#include "RecordingMPV.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <limits>

namespace {

const FileURL file = FileURL::fromNativePath("/films/one.mp4");

QStringList options(const QString &hwdec, const QString &loop) {
    const QString pairs = QStringLiteral(
        "config=no load-scripts=no load-stats-overlay=no load-osd-console=no load-auto-profiles=no ytdl=no "
        "osc=no input-default-bindings=no input-vo-keyboard=no hwdec=%1 vo=libmpv keepaspect=yes "
        "panscan=0.0 keep-open=yes loop-file=%2 aid=auto ao=pipewire,pulse,alsa audio-client-name=Mosa "
        "sub-auto=fuzzy sub-file-paths=sub:subs:subtitles");
    return pairs.arg(hwdec, loop)
        .split(u' ')
        .replaceInStrings(QRegularExpression(QStringLiteral("^")), QStringLiteral("option "));
}

} // namespace

/// The player's logic against a recorded library.
class MPVPlayerControllerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsAndStops_data();
    void startsAndStops();
    void staysInertWhenThePlayerFails_data();
    void staysInertWhenThePlayerFails();
    void polls_data();
    void polls();
    void keepsWhatCannotBeRead();
    void seeks_data();
    void seeks();
    void sendsVolume_data();
    void sendsVolume();
    void nothingReachesThePlayerAfterShutdown();
};

void MPVPlayerControllerTest::startsAndStops_data() {
    QTest::addColumn<bool>("preview");
    QTest::addColumn<QString>("hwdec");
    QTest::addColumn<QString>("loop");
    QTest::newRow("preview") << true << "no"
                             << "inf";
    QTest::newRow("full") << false << "auto-safe"
                          << "no";
}

void MPVPlayerControllerTest::startsAndStops() {
    QFETCH(bool, preview);
    QFETCH(QString, hwdec);
    QFETCH(QString, loop);
    RecordingMPV mpv;
    MPVPlayerController player(file, preview, mpv.functions());
    QCOMPARE(player.surface()->presentsFramesThroughLayer(), preview);
    QCOMPARE(player.isMuted(), preview);
    QCOMPARE(player.volume(), 70.0);
    QCOMPARE(player.paused(), false);
    QStringList started{QStringLiteral("create")};
    started += options(hwdec, loop);
    started << QStringLiteral("initialize");
    if (preview) {
        started << QStringLiteral("set gpu-hwdec-interop=no");
    }
    started << QStringLiteral("render_context_create API_TYPE=opengl OPENGL_INIT_PARAMS")
            << QStringLiteral("set_update_callback") << QStringLiteral("set video-timing-offset=0")
            << QStringLiteral("set access-references=no")
            << QStringLiteral("set demuxer-lavf-o=protocol_whitelist=file")
            << QStringLiteral("set mute=") + (preview ? QStringLiteral("yes") : QStringLiteral("no"))
            << QStringLiteral("set volume=70") << QStringLiteral("command loadfile /films/one.mp4 replace");
    QCOMPARE(mpv.take(), started);
    player.shutdown();
    // Stopping first lets the context go without waiting for frames that nobody takes.
    QCOMPARE(mpv.take(),
             (QStringList{QStringLiteral("clear_update_callback"), QStringLiteral("command_async stop"),
                          QStringLiteral("render_context_free"), QStringLiteral("terminate_destroy")}));
    player.shutdown();
    QCOMPARE(mpv.take(), QStringList());
}

void MPVPlayerControllerTest::staysInertWhenThePlayerFails_data() {
    QTest::addColumn<bool>("createFails");
    QTest::addColumn<int>("initializeStatus");
    QTest::addColumn<int>("renderContextStatus");
    QTest::addColumn<bool>("destroyed");
    QTest::newRow("not made") << true << 0 << 0 << false;
    QTest::newRow("not initialised") << false << -1 << 0 << true;
    QTest::newRow("no render context") << false << 0 << -18 << true;
}

void MPVPlayerControllerTest::staysInertWhenThePlayerFails() {
    QFETCH(bool, createFails);
    QFETCH(int, initializeStatus);
    QFETCH(int, renderContextStatus);
    QFETCH(bool, destroyed);
    RecordingMPV mpv;
    mpv.createFails = createFails;
    mpv.initializeStatus = initializeStatus;
    mpv.renderContextStatus = renderContextStatus;
    MPVPlayerController player(file, true, mpv.functions());
    QCOMPARE(mpv.take().endsWith(QStringLiteral("terminate_destroy")), destroyed);

    QSignalSpy polled(&player, &MPVPlayerController::isMutedChanged);
    player.seek(3);
    player.setVolume(10);
    player.command({QStringLiteral("cycle"), QStringLiteral("sub")});
    player.shutdown();
    QTest::qWait(300);
    QCOMPARE(mpv.calls, QStringList());
    QCOMPARE(polled.count(), 0);
    QVERIFY(player.isMuted());
    QVERIFY(!player.hasRenderedFrame());
}

void MPVPlayerControllerTest::polls_data() {
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<double>("seconds");
    QTest::newRow("plain") << QByteArray("12.345000") << 12.345;
    QTest::newRow("negative") << QByteArray("-0.25") << 0.0;
    QTest::newRow("no number") << QByteArray("12:34") << 7.0;
    QTest::newRow("number and more") << QByteArray("12.5 s") << 7.0;
    QTest::newRow("nothing") << QByteArray("") << 7.0;
    QTest::newRow("not a number") << QByteArray("nan") << 7.0;
}

void MPVPlayerControllerTest::polls() {
    QFETCH(QByteArray, text);
    QFETCH(double, seconds);
    RecordingMPV mpv;
    mpv.properties = {{"time-pos", "7"}, {"duration", "7"}, {"pause", "no"}, {"mute", "yes"}};
    MPVPlayerController player(file, false, mpv.functions());
    QTRY_COMPARE(player.position(), 7.0);
    QCOMPARE(player.duration(), 7.0);

    mpv.properties = {
        {"time-pos", text}, {"duration", text}, {"pause", "yes"}, {"mute", "no"}, {"current-ao", "pulse"}};
    mpv.take();
    QSignalSpy positions(&player, &MPVPlayerController::positionChanged);
    QTRY_COMPARE(player.audioOutput(), QStringLiteral("pulse"));
    QCOMPARE(player.position(), seconds);
    QCOMPARE(player.duration(), seconds);
    QVERIFY(player.paused());
    QVERIFY(!player.isMuted());
    QCOMPARE(mpv.take().mid(0, 5),
             (QStringList{QStringLiteral("get time-pos"), QStringLiteral("get duration"),
                          QStringLiteral("get pause"), QStringLiteral("get mute"),
                          QStringLiteral("get current-ao")}));
    QCOMPARE(mpv.textsToFree, 0);
    // Observers hear of a value that is read even when it stays.
    if (seconds != 7.0) {
        QTRY_VERIFY(positions.count() >= 3);
    }
}

void MPVPlayerControllerTest::keepsWhatCannotBeRead() {
    RecordingMPV mpv;
    mpv.properties = {{"time-pos", "3"}, {"duration", "9"}, {"pause", "yes"}, {"mute", "yes"}};
    MPVPlayerController player(file, false, mpv.functions());
    QTRY_VERIFY(player.isMuted());
    mpv.properties.clear();
    mpv.take();
    QTRY_VERIFY(mpv.calls.count(QStringLiteral("get current-ao")) >= 2);
    QCOMPARE(player.position(), 3.0);
    QCOMPARE(player.duration(), 9.0);
    QVERIFY(player.paused());
    QVERIFY(player.isMuted());
    QCOMPARE(player.audioOutput(), QString());
}

void MPVPlayerControllerTest::seeks_data() {
    QTest::addColumn<QByteArray>("duration");
    QTest::addColumn<double>("seconds");
    QTest::addColumn<double>("target");
    QTest::addColumn<QString>("text");
    QTest::newRow("inside") << QByteArray("60") << 12.5 << 12.5 << "12.5";
    QTest::newRow("whole") << QByteArray("60") << 12.0 << 12.0 << "12.0";
    QTest::newRow("before the start") << QByteArray("60") << -5.0 << 0.0 << "0.0";
    QTest::newRow("beyond the end") << QByteArray("60.04") << 61.0 << 60.04 << "60.04";
    QTest::newRow("duration unknown") << QByteArray() << 30.0 << 0.0 << "0.0";
    QTest::newRow("shortest that reads back")
        << QByteArray("60") << 0.1 + 0.2 << 0.1 + 0.2 << "0.30000000000000004";
    QTest::newRow("tiny") << QByteArray("60") << 1e-7 << 1e-7 << "0.0000001";
}

void MPVPlayerControllerTest::seeks() {
    QFETCH(QByteArray, duration);
    QFETCH(double, seconds);
    QFETCH(double, target);
    QFETCH(QString, text);
    RecordingMPV mpv;
    if (!duration.isEmpty()) {
        mpv.properties.insert("duration", duration);
    }
    MPVPlayerController player(file, false, mpv.functions());
    QTRY_COMPARE(player.duration(), duration.toDouble());
    mpv.take();
    player.seek(seconds);
    QCOMPARE(mpv.take(), QStringList{QStringLiteral("command seek %1 absolute+exact").arg(text)});
    QCOMPARE(player.position(), target);
}

void MPVPlayerControllerTest::sendsVolume_data() {
    QTest::addColumn<double>("volume");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("truncated") << 55.7 << QStringList{QStringLiteral("set volume=55")};
    QTest::newRow("truncated toward zero") << -0.9 << QStringList{QStringLiteral("set volume=0")};
    QTest::newRow("not clamped") << 250.0 << QStringList{QStringLiteral("set volume=250")};
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << QStringList();
}

void MPVPlayerControllerTest::sendsVolume() {
    QFETCH(double, volume);
    QFETCH(QStringList, calls);
    RecordingMPV mpv;
    MPVPlayerController player(file, false, mpv.functions());
    mpv.take();
    player.setVolume(volume);
    QCOMPARE(mpv.take(), calls);
}

void MPVPlayerControllerTest::nothingReachesThePlayerAfterShutdown() {
    RecordingMPV mpv;
    mpv.properties.insert("duration", "60");
    MPVPlayerController player(file, false, mpv.functions());
    QTRY_COMPARE(player.duration(), 60.0);
    player.shutdown();
    mpv.take();
    player.togglePause();
    player.toggleMute();
    player.seek(5);
    player.setVolume(5);
    player.surface()->consumeRenderUpdates();
    QTest::qWait(300);
    QCOMPARE(mpv.calls, QStringList());
    QVERIFY(player.paused());
    QVERIFY(player.isMuted());
    QCOMPARE(player.position(), 5.0);
}

QTEST_MAIN(MPVPlayerControllerTest)
#include "MPVPlayerControllerTest.moc"
