#include "VideoStill.h"

#include "MediaMaker.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

/// Arguments are separated by single spaces; files are names in the test's folder.

class VideoStillTest : public QObject {
    Q_OBJECT

    FileURL url(const QByteArray &name) const {
        return FileURL::fromNativePath(m_folder.path().toUtf8() + '/' + name);
    }

    QTemporaryDir m_folder;

    bool ffmpeg(const QByteArray &arguments) const {
        QProcess process;
        process.setWorkingDirectory(m_folder.path());
        process.start(u"ffmpeg"_s,
                      QStringList{u"-v"_s, u"error"_s, u"-y"_s} + QString::fromUtf8(arguments).split(u' '));
        return process.waitForFinished(60'000) && process.exitCode() == 0;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_folder.isValid()); }
    void everyContainer_data() {
        QTest::addColumn<QByteArray>("extension");
        for (const QByteArray &extension : MediaMaker::videoExtensions()) {
            QTest::newRow(extension.constData()) << extension;
        }
    }

    void everyContainer() {
        QFETCH(QByteArray, extension);
        const FileURL file = url("clip." + extension);
        QVERIFY(MediaMaker::video(file, {.size = {176, 144}}));
        const QImage still = VideoStill::frame(file, 88);
        QCOMPARE(still.size(), QSize(88, 72));
        QCOMPARE(still.format(), QImage::Format_RGB32);
        QCOMPARE(still.pixelColor(3, 3).alpha(), 255);
        QVERIFY(MediaMaker::showsPattern(still));
    }

    void shapes_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("rotation");
        QTest::addColumn<QByteArray>("sampleAspect");
        QTest::addColumn<bool>("indexAtEnd");
        QTest::addColumn<QSize>("expected");
        QTest::newRow("small, not enlarged") << QSize(160, 120) << 0 << "1:1"_ba << true << QSize(160, 120);
        QTest::newRow("index first") << QSize(640, 480) << 0 << "1:1"_ba << false << QSize(320, 240);
        QTest::newRow("quarter turn") << QSize(240, 320) << 90 << "1:1"_ba << true << QSize(240, 320);
        QTest::newRow("half turn") << QSize(640, 480) << 180 << "1:1"_ba << true << QSize(320, 240);
        QTest::newRow("three quarters") << QSize(480, 640) << 270 << "1:1"_ba << true << QSize(240, 320);
        QTest::newRow("wide pixels") << QSize(320, 240) << 0 << "2:1"_ba << true << QSize(320, 120);
        QTest::newRow("narrow pixels") << QSize(320, 240) << 0 << "1:2"_ba << true << QSize(160, 240);
        QTest::newRow("turned wide pixels") << QSize(240, 320) << 90 << "2:1"_ba << true << QSize(120, 320);
    }

    void shapes() {
        QFETCH(QSize, size);
        QFETCH(int, rotation);
        QFETCH(QByteArray, sampleAspect);
        QFETCH(bool, indexAtEnd);
        QFETCH(QSize, expected);
        const FileURL file = url("shaped.mp4");
        QVERIFY(MediaMaker::video(
            file,
            {.size = size, .rotation = rotation, .sampleAspect = sampleAspect, .indexAtEnd = indexAtEnd}));
        const QImage still = VideoStill::frame(file, 320);
        QCOMPARE(still.size(), expected);
        QVERIFY(MediaMaker::showsPattern(still));
    }

    void codecs_data() {
        QTest::addColumn<QByteArray>("codec");
        QTest::addColumn<QByteArray>("extension");
        QTest::newRow("HEVC") << "libx265"_ba
                              << "mp4"_ba;
        QTest::newRow("VP9") << "libvpx-vp9"_ba
                             << "webm"_ba;
        QTest::newRow("Motion JPEG, full range") << "mjpeg"_ba
                                                 << "mov"_ba;
        QTest::newRow("MPEG-2 in a transport stream") << "mpeg2video"_ba
                                                      << "ts"_ba;
    }

    void codecs() {
        QFETCH(QByteArray, codec);
        QFETCH(QByteArray, extension);
        const FileURL file = url("codec." + extension);
        QVERIFY(MediaMaker::video(file, {.codec = codec}));
        QVERIFY(MediaMaker::showsPattern(VideoStill::frame(file, 320)));
    }

    void takesTheFrameAtOneFifth_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("options");
        QTest::addColumn<QColor>("expected");
        // Each second has its own colour.
        QTest::newRow("10 s at 2 s") << "ten.mp4"_ba
                                     << "-g 25"_ba << QColor(Qt::blue);
        QTest::newRow("transport stream") << "ten.ts"_ba
                                          << "-g 25"_ba << QColor(Qt::blue);
        QTest::newRow("one key frame only") << "key.mp4"_ba
                                            << "-g 9999"_ba << QColor(Qt::red);
        QTest::newRow("unknown duration, at 1 s") << "live.mkv"_ba
                                                  << "-g 25 -live 1"_ba << QColor(Qt::green);
    }

    void takesTheFrameAtOneFifth() {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, options);
        QFETCH(QColor, expected);
        const QByteArray colours = "color=red:s=64x64:r=25:d=1[a];color=lime:s=64x64:r=25:d=1[b];"
                                   "color=blue:s=64x64:r=25:d=1[c];color=white:s=64x64:r=25:d=7[d];"
                                   "[a][b][c][d]concat=n=4";
        QVERIFY(ffmpeg("-filter_complex " + colours +
                       " -c:v libx264 -preset ultrafast -pix_fmt yuv420p -bf 0 " + options + ' ' + name));
        const QImage still = VideoStill::frame(url(name), 720);
        QCOMPARE(still.size(), QSize(64, 64));
        const QColor colour = still.pixelColor(32, 32);
        QVERIFY2(std::abs(colour.red() - expected.red()) < 12 &&
                     std::abs(colour.green() - expected.green()) < 12 &&
                     std::abs(colour.blue() - expected.blue()) < 12,
                 colour.name().toLatin1());
    }

    void passesOverCoverArt() {
        QVERIFY(MediaMaker::video(url("film.mp4"), {.size = {320, 240}}));
        QVERIFY(ffmpeg("-f lavfi -i color=gray:s=100x100 -frames:v 1 cover.png"));
        QVERIFY(
            ffmpeg("-i cover.png -i film.mp4 -map 0 -map 1 -c copy -disposition:v:0 attached_pic both.mp4"));
        const QImage still = VideoStill::frame(url("both.mp4"), 720);
        QCOMPARE(still.size(), QSize(320, 240));
        QVERIFY(MediaMaker::showsPattern(still));
    }

    void refuses_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("missing") << QByteArray();
        QTest::newRow("empty") << QByteArray("");
        QTest::newRow("zeros") << QByteArray(300'000, '\0');
        QTest::newRow("noise") << MediaMaker::noise(300'000);
        QTest::newRow("text") << "#EXTM3U\n/etc/passwd\n"_ba.repeated(5000);
    }

    void refuses() {
        QFETCH(QByteArray, content);
        for (const char *name : {"refused.mp4", "refused.ts", "refused.mpg", "refused.avi"}) {
            const FileURL file = url(name);
            QFile::remove(file.path());
            QVERIFY(content.isNull() || MediaMaker::write(file, content));
            QVERIFY(VideoStill::frame(file, 720).isNull());
        }
        QFile::remove(url("refused.mp4").path());
        QCOMPARE(::mkfifo(url("refused.mp4").nativePath().constData(), 0600), 0);
        QVERIFY(VideoStill::frame(url("refused.mp4"), 720).isNull());
        QVERIFY(MediaMaker::video(url("sound.mp4"), {.video = false, .audio = true}));
        QVERIFY(VideoStill::frame(url("sound.mp4"), 720).isNull());
    }

    void damagedFilesEnd_data() {
        QTest::addColumn<QByteArray>("extension");
        for (const char *extension : {"mp4", "mkv", "ts", "avi", "flv", "mpg", "wmv", "ogv"}) {
            QTest::newRow(extension) << QByteArray(extension);
        }
    }

    void damagedFilesEnd() {
        QFETCH(QByteArray, extension);
        QVERIFY(MediaMaker::video(url("whole." + extension), {.size = {176, 144}, .indexAtEnd = false}));
        const QByteArray content = MediaMaker::read(url("whole." + extension));
        const FileURL damaged = url("damaged." + extension);
        QElapsedTimer timer;
        timer.start();
        for (int i = 1; i < 8; ++i) {
            QVERIFY(MediaMaker::write(damaged, content.left(content.size() * i / 8)));
            VideoStill::frame(damaged, 320);
            QByteArray bytes = content;
            for (int j = 0; j < 40; ++j) {
                bytes.replace((j * 997 * i) % (bytes.size() - 8), 4, MediaMaker::noise(4, quint32(i + j)));
            }
            QVERIFY(MediaMaker::write(damaged, bytes));
            const QImage still = VideoStill::frame(damaged, 320);
            QVERIFY(still.width() <= 320 && still.height() <= 320);
        }
        // Each of the attempts is bounded.
        QVERIFY(timer.elapsed() < 14 * (VideoStill::timeLimit + 5) * 1000);
        // What is left of a file cut in half still gives a picture.
        QVERIFY(MediaMaker::write(damaged, content.left(content.size() * 3 / 4)));
        QVERIFY(!VideoStill::frame(damaged, 320).isNull());
    }
};

QTEST_GUILESS_MAIN(VideoStillTest)
#include "VideoStillTest.moc"
