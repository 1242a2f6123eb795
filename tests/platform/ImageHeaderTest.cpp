#include "ImageHeader.h"

#include "Bytes.h"
#include "MediaMaker.h"
#include "TemporaryFolder.h"

#include <QElapsedTimer>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace Bytes;

namespace {

/// Image headers without an image, made by hand from the formats' public descriptions.
namespace Header {

QByteArray bmp(int length, int width, int height) {
    const bool old = length == 12;
    return "BM" + QByteArray(12, '\0') + little(length) + (old ? little(width, 2) : little(width)) +
           (old ? little(height, 2) : little(height)) + QByteArray(64, '\0');
}

QByteArray webp(const QByteArray &chunk) {
    return "RIFF" + little(1000) + "WEBP" + chunk + QByteArray(64, '\0');
}

QByteArray bigTiff(qint64 width, qint64 height) {
    const auto entry = [](int tag, qint64 value) {
        return little(tag, 2) + little(4, 2) + little(1) + little(0) + little(value) + little(0);
    };
    return QByteArray("II+\0\x08\0\0\0", 8) + little(16) + little(0) + little(2) + little(0) +
           entry(256, width) + entry(257, height) + QByteArray(64, '\0');
}

/// A JPEG whose size comes after many and long segments.
QByteArray longJpeg(int segments) {
    QByteArray bytes("\xFF\xD8", 2);
    for (int i = 0; i < segments; ++i) {
        bytes += QByteArray("\xFF\xE2\xFF\xFF", 4) + QByteArray(65533, char(0xC0));
    }
    return bytes + QByteArray("\xFF\xFF\xFF\xC2\x00\x11\x08\x01\x00\x02\x00", 11) + QByteArray(20, '\0');
}

QByteArray png(qint64 width, qint64 height, bool phone = false) {
    return QByteArray("\x89PNG\r\n\x1A\n", 8) +
           (phone ? big(4) + "CgBI" + QByteArray(8, '\0') : QByteArray()) + big(13) + "IHDR" + big(width) +
           big(height) + QByteArray(64, '\0');
}

} // namespace Header

} // namespace

class ImageHeaderTest : public QObject {
    Q_OBJECT

    TemporaryFolder m_folder;

    std::optional<QSize> sizeOf(const QByteArray &content) const {
        const FileURL url = m_folder.at("probe.bin");
        return MediaMaker::write(url, content) ? ImageHeader::pixelSize(url) : std::nullopt;
    }

private Q_SLOTS:
    void madePhotos_data() {
        QTest::addColumn<QByteArray>("extension");
        for (const QByteArray &extension : MediaMaker::photoExtensions()) {
            QTest::newRow(extension.constData()) << extension;
        }
    }

    void madePhotos() {
        QFETCH(QByteArray, extension);
        for (const QSize size : {QSize(640, 480), QSize(100, 1000), QSize(65, 33)}) {
            const FileURL url = m_folder.at("photo." + extension);
            QVERIFY(MediaMaker::photo(url, {.size = size}));
            QCOMPARE(ImageHeader::pixelSize(url), size);
        }
    }

    void handMade_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QSize>("size");
        const QSize none;
        const auto row = [](const char *name, const QByteArray &content, const QSize &size) {
            QTest::newRow(name) << content << size;
        };
        row("ico", "\0\0\1\0\1\0\x20\0"_ba + QByteArray(64, '\0'), {32, 256});
        row("bmp", Header::bmp(40, 300, 200), {300, 200});
        row("bmp from the top", Header::bmp(40, 300, -200), {300, 200});
        row("bmp of OS/2", Header::bmp(12, 300, 200), {300, 200});
        row("bmp of least height", Header::bmp(40, 300, std::numeric_limits<int>::min()), none);
        row("webp lossy",
            Header::webp("VP8 " + little(900) + QByteArray("\x10\0\0\x9D\x01\x2A", 6) +
                         little(300 | 0x4000, 2) + little(200, 2)),
            {300, 200});
        row("webp lossless", Header::webp("VP8L" + little(900) + "\x2F" + little(299 | 199 << 14)),
            {300, 200});
        row("webp extended",
            Header::webp("VP8X" + little(10) + little(0) + little(16383).left(3) + little(199).left(3)),
            {16384, 200});
        row("big tiff", Header::bigTiff(70'000, 2), {70'000, 2});
        row("tiff that begins nowhere", QByteArray("II*\0\xF0\xFF\xFF\xFF", 8) + QByteArray(100, '\0'), none);
        row("png of phones", Header::png(300, 200, true), {300, 200});
        row("png of no height", Header::png(300, 0), none);
        row("bomb", Header::png(2'000'000'000, 2'000'000'000), {2'000'000'000, 2'000'000'000});
        row("jpeg after 4 MB", Header::longJpeg(64), {512, 256});
        row("jpeg without picture", Header::longJpeg(1).left(60'000), none);
        row("jpeg of short segment", QByteArray("\xFF\xD8\xFF\xE0\0\x01", 6) + QByteArray(60, '\0'), none);
        row("zeros", QByteArray(50'000, '\0'), none);
        row("noise", MediaMaker::noise(50'000), none);
        row("box file of nothing", big(24) + "ftypheic" + big(0) + "heicmif1" + QByteArray(1000, '\0'), none);
    }

    void handMade() {
        QFETCH(QByteArray, content);
        QFETCH(QSize, size);
        QCOMPARE(sizeOf(content), size.isValid() ? std::optional(size) : std::nullopt);
    }

    void damagedPhotos_data() { madePhotos_data(); }

    /// Real files with bytes changed at random: the answer is a size that could be, or none, and comes at
    /// once.
    void damagedPhotos() {
        QFETCH(QByteArray, extension);
        const FileURL url = m_folder.at("small." + extension);
        QVERIFY(MediaMaker::photo(url, {.size = {65, 33}, .minimumBytes = 0}));
        const bool slow = extension.startsWith("he") || extension == "avif";
        QElapsedTimer timer;
        timer.start();
        for (const QByteArray &variant : MediaMaker::damaged(MediaMaker::read(url), slow ? 1500 : 4000)) {
            const auto size = sizeOf(variant);
            QVERIFY(!size || (size->width() > 0 && size->height() > 0));
        }
        QVERIFY2(timer.elapsed() < 120'000, "a changed file took long");
    }

    void refusesWhatIsNoFile() {
        const FileURL pipe = m_folder.at("pipe.jpg");
        QCOMPARE(mkfifo(pipe.nativePath().constData(), 0600), 0);
        QVERIFY(!ImageHeader::pixelSize(pipe));
        QVERIFY(MediaMaker::write(m_folder.at("real.png"), Header::png(300, 200)));
        QCOMPARE(symlink("real.png", m_folder.at("link.png").nativePath().constData()), 0);
        QVERIFY(!ImageHeader::pixelSize(m_folder.at("link.png")));
        QVERIFY(ImageHeader::pixelSize(m_folder.at("real.png")).has_value());
    }

    /// Longer than the kernel takes in one call.
    void readsLongPaths() {
        QByteArray path = m_folder.url().nativePath();
        QCOMPARE(chdir(path.constData()), 0);
        const QByteArray name(250, 'd');
        for (int i = 0; i < 20; ++i) {
            QCOMPARE(mkdir(name.constData(), 0700), 0);
            QCOMPARE(chdir(name.constData()), 0);
            path += '/' + name;
        }
        QVERIFY(MediaMaker::write(FileURL::fromNativePath("photo.png"), Header::png(300, 200)));
        QCOMPARE(chdir("/"), 0);
        QVERIFY(path.size() > 5000);
        QCOMPARE(ImageHeader::pixelSize(FileURL::fromNativePath(path + "/photo.png")), QSize(300, 200));
    }
};

QTEST_GUILESS_MAIN(ImageHeaderTest)
#include "ImageHeaderTest.moc"
