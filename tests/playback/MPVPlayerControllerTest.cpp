#include "MPVPlayerController.h"
#include "MPVOpenGLView.h"
#include "RecordingMPV.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

const FileURL file = FileURL::fromNativePath("/films/one.mp4");

QStringList options(const QString &hwdec, const QString &loop) {
    const QString pairs = QStringLiteral(
        "config=no load-scripts=no load-stats-overlay=no load-osd-console=no load-auto-profiles=no ytdl=no "
        "osc=no input-default-bindings=no input-vo-keyboard=no hwdec=%1 vo=libmpv keepaspect=yes "
        "panscan=0.0 keep-open=yes loop-file=%2 aid=auto ao=pipewire,pulse,alsa audio-client-name=Mosa "
        "sub-auto=fuzzy sub-file-paths=sub:subs:subtitles");
    return pairs.arg(hwdec, loop).split(u' ').replaceInStrings(QRegularExpression(u"^"_s), u"option "_s);
}

} // namespace

/// The player's logic against a recorded library.
class MPVPlayerControllerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void startsAndStops_data() {
        QTest::addColumn<bool>("preview");
        QTest::addColumn<QString>("hwdec");
        QTest::addColumn<QString>("loop");
        QTest::newRow("preview") << true << "no"
                                 << "inf";
        QTest::newRow("full") << false << "auto-safe"
                              << "no";
    }

    void startsAndStops() {
        QFETCH(bool, preview);
        QFETCH(QString, hwdec);
        QFETCH(QString, loop);
        RecordingMPV mpv;
        MPVPlayerController player(file, preview, mpv.functions());
        QCOMPARE(player.surface()->presentsFramesThroughLayer(), preview);
        QCOMPARE(player.isMuted(), preview);
        QCOMPARE(player.volume(), 70.0);
        QCOMPARE(player.paused(), false);
        QStringList started{u"create"_s};
        started += options(hwdec, loop);
        started << u"initialize"_s;
        if (preview) {
            started << u"set gpu-hwdec-interop=no"_s;
        }
        started << u"render_context_create API_TYPE=opengl OPENGL_INIT_PARAMS"_s << u"set_update_callback"_s
                << u"set video-timing-offset=0"_s << u"set access-references=no"_s
                << u"set demuxer-lavf-o=protocol_whitelist=file"_s
                << u"set mute="_s + (preview ? u"yes"_s : u"no"_s) << u"set volume=70"_s
                << u"command loadfile /films/one.mp4 replace"_s;
        QCOMPARE(mpv.take(), started);
        player.shutdown();
        // Stopping first lets the context go without waiting for frames that nobody takes.
        QCOMPARE(mpv.take(), (QStringList{u"clear_update_callback"_s, u"command_async stop"_s,
                                          u"render_context_free"_s, u"terminate_destroy"_s}));
        // Nothing reaches the player any more.
        player.shutdown();
        player.togglePause();
        player.toggleMute();
        player.seek(5);
        player.setVolume(5);
        player.surface()->consumeRenderUpdates();
        QTest::qWait(300);
        QCOMPARE(mpv.take(), QStringList());
    }

    void staysInertWhenThePlayerFails_data() {
        QTest::addColumn<QString>("failing");
        QTest::newRow("not made") << "create";
        QTest::newRow("not initialised") << "initialize";
        QTest::newRow("no render context") << "render_context_create";
    }

    void staysInertWhenThePlayerFails() {
        RecordingMPV mpv;
        QFETCH(QString, failing);
        mpv.failing = failing;
        MPVPlayerController player(file, true, mpv.functions());
        QCOMPARE(mpv.take().endsWith(u"terminate_destroy"_s), failing != u"create"_s);

        QSignalSpy polled(&player, &MPVPlayerController::isMutedChanged);
        player.seek(3);
        player.setVolume(10);
        player.command({u"cycle"_s, u"sub"_s});
        player.shutdown();
        QTest::qWait(300);
        QCOMPARE(mpv.calls, QStringList());
        QCOMPARE(polled.count(), 0);
        QVERIFY(player.isMuted());
        QVERIFY(!player.hasRenderedFrame());
    }

    void polls_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<double>("seconds");
        QTest::newRow("plain") << QByteArray("12.345000") << 12.345;
        QTest::newRow("negative") << QByteArray("-0.25") << 0.0;
        QTest::newRow("no number") << QByteArray("12:34") << 7.0;
        QTest::newRow("not a number") << QByteArray("nan") << 7.0;
        QTest::newRow("not to be read") << QByteArray() << 7.0;
    }

    void polls() {
        QFETCH(QByteArray, text);
        QFETCH(double, seconds);
        RecordingMPV mpv;
        mpv.properties = {{"time-pos", "7"}, {"duration", "7"}, {"pause", "no"}, {"mute", "yes"}};
        MPVPlayerController player(file, false, mpv.functions());
        QTRY_COMPARE(player.position(), 7.0);
        QCOMPARE(player.duration(), 7.0);

        mpv.properties = {{"pause", "yes"}, {"mute", "no"}, {"current-ao", "pulse"}};
        if (!text.isNull()) {
            mpv.properties.insert({{"time-pos", text}, {"duration", text}});
        }
        mpv.take();
        QSignalSpy positions(&player, &MPVPlayerController::positionChanged);
        QTRY_COMPARE(player.audioOutput(), u"pulse"_s);
        QCOMPARE(player.position(), seconds);
        QCOMPARE(player.duration(), seconds);
        QVERIFY(player.paused());
        QVERIFY(!player.isMuted());
        QCOMPARE(mpv.take().mid(0, 5), (QStringList{u"get time-pos"_s, u"get duration"_s, u"get pause"_s,
                                                    u"get mute"_s, u"get current-ao"_s}));
        // Observers hear of a value that is read even when it stays.
        if (seconds != 7.0) {
            QTRY_VERIFY(positions.count() >= 3);
        }
    }

    void seeks_data() {
        QTest::addColumn<QByteArray>("duration");
        QTest::addColumn<double>("seconds");
        QTest::addColumn<double>("target");
        QTest::addColumn<QString>("text");
        QTest::newRow("inside") << QByteArray("60") << 12.5 << 12.5 << "12.5";
        QTest::newRow("before the start") << QByteArray("60") << -5.0 << 0.0 << "0.0";
        QTest::newRow("beyond the end") << QByteArray("60.04") << 61.0 << 60.04 << "60.04";
        QTest::newRow("duration unknown") << QByteArray() << 30.0 << 0.0 << "0.0";
        QTest::newRow("shortest that reads back")
            << QByteArray("60") << 0.1 + 0.2 << 0.1 + 0.2 << "0.30000000000000004";
        QTest::newRow("tiny") << QByteArray("60") << 1e-7 << 1e-7 << "0.0000001";
    }

    void seeks() {
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
        QCOMPARE(mpv.take(), QStringList{u"command seek %1 absolute+exact"_s.arg(text)});
        QCOMPARE(player.position(), target);
    }

    void sendsVolume() {
        RecordingMPV mpv;
        MPVPlayerController player(file, false, mpv.functions());
        mpv.take();
        player.setVolume(55.7);
        player.setVolume(250);
        player.setVolume(std::numeric_limits<double>::quiet_NaN());
        // Truncated, not clamped, and nothing for what is no number.
        QCOMPARE(mpv.take(), (QStringList{u"set volume=55"_s, u"set volume=250"_s}));
    }
};

QTEST_MAIN(MPVPlayerControllerTest)
#include "MPVPlayerControllerTest.moc"
