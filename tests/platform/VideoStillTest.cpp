#include "VideoStill.h"

#include "MediaMaker.h"
#include "TemporaryFolder.h"

#include <QColor>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;
using MediaMaker::VideoOptions;
Q_DECLARE_METATYPE(VideoOptions)

class VideoStillTest : public QObject {
    Q_OBJECT

    TemporaryFolder m_folder;

    FileURL url(const QByteArray &name) const { return m_folder.at(name); }

    /// Arguments are separated by single spaces; files are names in the test's folder.
    bool ffmpeg(const QByteArray &arguments) const {
        QProcess process;
        process.setWorkingDirectory(m_folder.url().path());
        process.start(u"ffmpeg"_s,
                      QStringList{u"-v"_s, u"error"_s, u"-y"_s} + QString::fromUtf8(arguments).split(u' '));
        return process.waitForFinished(60'000) && process.exitCode() == 0;
    }

private Q_SLOTS:
    void showsThePicture_data() {
        QTest::addColumn<QByteArray>("extension");
        QTest::addColumn<VideoOptions>("options");
        QTest::addColumn<QSize>("expected");
        for (const QByteArray &extension : MediaMaker::videoExtensions()) {
            QTest::newRow(extension.constData())
                << extension << VideoOptions{.size = {640, 480}} << QSize(320, 240);
        }
        const auto row = [](const char *name, const VideoOptions &options, QSize expected,
                            const char *extension = "mp4") {
            QTest::newRow(name) << QByteArray(extension) << options << expected;
        };
        row("small, not enlarged", {.size = {160, 120}}, {160, 120});
        row("index first", {.size = {640, 480}, .indexAtEnd = false}, {320, 240});
        row("quarter turn", {.size = {240, 320}, .rotation = 90}, {240, 320});
        row("half turn", {.size = {640, 480}, .rotation = 180}, {320, 240});
        row("three quarters", {.size = {480, 640}, .rotation = 270}, {240, 320});
        row("wide pixels", {.size = {320, 240}, .sampleAspect = "2:1"}, {320, 120});
        row("narrow pixels", {.size = {320, 240}, .sampleAspect = "1:2"}, {160, 240});
        row("turned wide pixels", {.size = {240, 320}, .rotation = 90, .sampleAspect = "2:1"}, {120, 320});
        row("HEVC", {.codec = "libx265"}, {320, 240});
        row("VP9", {.codec = "libvpx-vp9"}, {320, 240}, "webm");
        row("Motion JPEG, full range", {.codec = "mjpeg"}, {320, 240}, "mov");
        row("MPEG-2 in a transport stream", {.codec = "mpeg2video"}, {320, 240}, "ts");
        row("sound alone", {.video = false, .audio = true}, {0, 0});
    }

    void showsThePicture() {
        QFETCH(QByteArray, extension);
        QFETCH(VideoOptions, options);
        QFETCH(QSize, expected);
        const FileURL file = url("clip." + extension);
        QVERIFY(MediaMaker::video(file, options));
        const QImage still = VideoStill::frame(file, 320);
        QCOMPARE(still.size(), expected);
        QCOMPARE(MediaMaker::showsPattern(still), !expected.isEmpty());
        QVERIFY(still.isNull() ||
                (still.format() == QImage::Format_RGB32 && qAlpha(still.pixel(3, 3)) == 255));
    }

    /// Pixels written behind an image's last row spoil the heap, which notices when it is used again.
    void everyWidthStaysInTheImage() {
        for (const QSize size : {QSize(180, 136), QSize(540, 406), QSize(404, 538)}) {
            QVERIFY(MediaMaker::video(url("unscaled.mp4"), {.size = size}));
            for (int i = 0; i < 8; ++i) {
                QCOMPARE(VideoStill::frame(url("unscaled.mp4"), 720).size(), size);
            }
        }
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
        QTest::newRow("unknown duration") << "live.mkv"_ba
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
};

QTEST_GUILESS_MAIN(VideoStillTest)
#include "VideoStillTest.moc"
