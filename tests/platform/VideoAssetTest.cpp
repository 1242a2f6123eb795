#include "VideoAsset.h"

#include "MediaMaker.h"
#include "TemporaryFolder.h"
#include "VideoStill.h"

#include <QElapsedTimer>
#include <QTest>

#include <cmath>

using namespace Qt::StringLiterals;

using MediaMaker::VideoOptions;
Q_DECLARE_METATYPE(VideoOptions)

namespace {

/// Far more than any of these files may cost, even on a busy machine.
constexpr qint64 patience = 30'000;

} // namespace

class VideoAssetTest : public QObject {
    Q_OBJECT

    TemporaryFolder m_folder;

    static double ratioOf(const FileURL &url) {
        const auto size = VideoAsset::displaySize(url);
        return size ? size->width() / size->height() : 0;
    }

private Q_SLOTS:
    void displaySize_data() {
        QTest::addColumn<QByteArray>("extension");
        QTest::addColumn<VideoOptions>("options");
        QTest::addColumn<double>("ratio");
        for (const QByteArray &extension : MediaMaker::videoExtensions()) {
            QTest::newRow(extension.constData()) << extension << VideoOptions{} << 4.0 / 3;
            QTest::addRow("%s with sound", extension.constData())
                << extension << VideoOptions{.size = {352, 288}, .audio = true} << 352.0 / 288;
        }
        for (const char *extension : {"mp4", "mov", "m4v", "3gp"}) {
            for (const int turn : {90, 180, 270}) {
                QTest::addRow("%s turned by %d", extension, turn)
                    << QByteArray(extension) << VideoOptions{.size = {160, 240}, .rotation = turn} << 2.0 / 3;
            }
        }
        // Stored pixels that are wider than high, in every container that can tell it or whose codec does.
        for (const char *extension :
             {"mp4", "mkv", "webm", "ts", "m2ts", "mts", "flv", "mpg", "ogv", "wmv"}) {
            QTest::addRow("%s anamorphic", extension)
                << QByteArray(extension) << VideoOptions{.size = {352, 288}, .sampleAspect = "16:11"}
                << 352.0 / 288 * 16 / 11;
        }
        QTest::newRow("mpeg-1 anamorphic")
            << "mpeg"_ba << VideoOptions{.size = {352, 288}, .sampleAspect = "12:11"}
            << 352.0 / 288 * 12 / 11;
        QTest::newRow("turned and anamorphic")
            << "mp4"_ba << VideoOptions{.size = {240, 320}, .rotation = 90, .sampleAspect = "2:1"}
            << 240.0 / 640;
        QTest::newRow("index first") << "mp4"_ba << VideoOptions{.indexAtEnd = false} << 4.0 / 3;
        QTest::newRow("hevc in ts") << "ts"_ba << VideoOptions{.codec = "libx265"} << 4.0 / 3;
        QTest::newRow("mpeg-2 in ts")
            << "ts"_ba << VideoOptions{.size = {352, 288}, .sampleAspect = "16:11", .codec = "mpeg2video"}
            << 352.0 / 288 * 16 / 11;
        QTest::newRow("h263 in flv") << "flv"_ba << VideoOptions{.codec = "flv"} << 4.0 / 3;
        QTest::newRow("vp9 in mkv") << "mkv"_ba << VideoOptions{.codec = "libvpx-vp9"} << 4.0 / 3;
        for (const char *extension : {"mp4", "mkv", "avi", "ts", "mpg", "flv", "ogv", "wmv", "rm"}) {
            QTest::addRow("%s without picture", extension)
                << QByteArray(extension) << VideoOptions{.seconds = 8, .video = false} << 0.0;
        }
    }

    void displaySize() {
        QFETCH(QByteArray, extension);
        QFETCH(VideoOptions, options);
        QFETCH(double, ratio);
        const FileURL url = m_folder.at("video." + extension);
        QVERIFY(MediaMaker::video(url, options));
        const double measured = ratioOf(url);
        QVERIFY2(std::abs(measured - ratio) < 0.01, qPrintable(QString::number(measured)));
    }

    void damagedFiles_data() {
        QTest::addColumn<QByteArray>("extension");
        for (const QByteArray &extension : MediaMaker::videoExtensions()) {
            QTest::newRow(extension.constData()) << extension;
        }
    }

    /// Whatever the damage, answers come: a size or none, a picture or none. What is left of a file that was
    /// cut shows one, but for RealMedia, which the demuxer gives up then.
    void damagedFiles() {
        QFETCH(QByteArray, extension);
        const FileURL whole = m_folder.at("whole." + extension);
        QVERIFY(MediaMaker::video(whole, {.indexAtEnd = false}));
        const QByteArray content = MediaMaker::read(whole);
        const FileURL damaged = m_folder.at("damaged." + extension);
        for (const QByteArray &variant : MediaMaker::damaged(content, 15)) {
            QVERIFY(MediaMaker::write(damaged, variant));
            QElapsedTimer timer;
            timer.start();
            const auto size = VideoAsset::displaySize(damaged);
            QVERIFY(!size || (size->width() > 0 && size->height() > 0));
            const QImage still = VideoStill::frame(damaged, 200);
            QVERIFY(still.width() <= 200 && still.height() <= 200);
            QVERIFY(timer.elapsed() < patience);
        }
        QVERIFY(MediaMaker::write(damaged, content.left(content.size() * 3 / 4)));
        QVERIFY(extension.startsWith("rm") || !VideoStill::frame(damaged, 200).isNull());
    }

    void readsNamesOfAnyBytes() {
        for (const QByteArray &name :
             {"caf\xE9 %d.mp4"_ba, "two\nlines.mp4"_ba, QByteArray(251, 'x') + ".mp4", "http:x?.mp4"_ba}) {
            QVERIFY(MediaMaker::video(m_folder.at(name)));
            QVERIFY(VideoAsset::displaySize(m_folder.at(name)).has_value());
        }
    }

    /// A playlist under a video's name must not lead to other files.
    void opensNothingElse() {
        QVERIFY(MediaMaker::video(m_folder.at("target.ts")));
        const FileURL list = m_folder.at("list.ts");
        QVERIFY(MediaMaker::write(
            list, "#EXTM3U\n#EXT-X-TARGETDURATION:10\n#EXTINF:2,\ntarget.ts\n#EXT-X-ENDLIST\n"));
        QVERIFY(!VideoAsset::displaySize(list));
        QVERIFY(MediaMaker::write(list, "ffconcat version 1.0\nfile target.ts\n"));
        QVERIFY(!VideoAsset::displaySize(list));
    }
};

QTEST_GUILESS_MAIN(VideoAssetTest)
#include "VideoAssetTest.moc"
