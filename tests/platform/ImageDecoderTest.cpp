#include "ImageDecoder.h"

#include "MediaMaker.h"

#include <QColorSpace>
#include <QFile>
#include <QImageWriter>
#include <QPainter>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>
#include <unistd.h>

class ImageDecoderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_folder.isValid()); }
    void thumbnail_data();
    void thumbnail();
    void tiffOrientation_data();
    void tiffOrientation();
    void pixelFormats_data();
    void pixelFormats();
    void sizes_data();
    void sizes();
    void fullImageIsReducedOnlyBeyondTheLimit();
    void convertsWideGamut();
    void takesTheFirstPictureOfAnAnimation();
    void contentDecides();
    void refuses_data();
    void refuses();
    void damagedFilesDoNoHarm_data();
    void damagedFilesDoNoHarm();
    void staysWithinMemory_data();
    void staysWithinMemory();
    void stopsWhenCancelled();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    FileURL url(const QString &name) const { return FileURL::fromPath(path(name)); }

    QTemporaryDir m_folder;
};

namespace {

QByteArray bigEndian(quint32 value) {
    return {reinterpret_cast<const char *>(
                std::array{uchar(value >> 24), uchar(value >> 16), uchar(value >> 8), uchar(value)}.data()),
            4};
}

QByteArray littleEndian(quint32 value, int bytes = 4) {
    QByteArray result = bigEndian(value);
    std::reverse(result.begin(), result.end());
    return result.left(bytes);
}

/// As PNG's chunks carry it.
quint32 crc(const QByteArray &bytes) {
    quint32 value = 0xFFFFFFFF;
    for (const char byte : bytes) {
        value ^= uchar(byte);
        for (int bit = 0; bit < 8; ++bit) {
            value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320 : 0);
        }
    }
    return ~value;
}

QByteArray pngChunk(const QByteArray &type, const QByteArray &content) {
    return bigEndian(quint32(content.size())) + type + content + bigEndian(crc(type + content));
}

/// A few hundred bytes that declare a picture of any size.
QByteArray pngBomb(quint32 width, quint32 height, char colourType) {
    const QByteArray header =
        bigEndian(width) + bigEndian(height) + '\x08' + colourType + QByteArray(3, '\0');
    return QByteArray("\x89PNG\r\n\x1A\n", 8) + pngChunk("IHDR", header) +
           pngChunk("IDAT", qCompress(QByteArray(100'000, '\0')).mid(4)) + pngChunk("IEND", {});
}

QByteArray bmpBomb(quint32 width, quint32 height) {
    return "BM" + littleEndian(1000) + littleEndian(0) + littleEndian(54) + littleEndian(40) +
           littleEndian(width) + littleEndian(height) + littleEndian(1, 2) + littleEndian(24, 2) +
           QByteArray(24 + 900, '\0');
}

QByteArray gifBomb() {
    return QByteArray("GIF89a\xFF\xFF\xFF\xFF\x80\0\0", 13) + QByteArray(6, '\0') +
           QByteArray(",\0\0\0\0\xFF\xFF\xFF\xFF\0\x02\x02\x44\x01\0;", 16);
}

qint64 peakMemory() {
    QFile status(QStringLiteral("/proc/self/status"));
    const QByteArray content = status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray();
    const qsizetype at = content.indexOf("VmHWM:");
    return at < 0 ? 0 : content.mid(at + 6, content.indexOf('k', at) - at - 6).trimmed().toLongLong() * 1024;
}

} // namespace

void ImageDecoderTest::thumbnail_data() {
    QTest::addColumn<QByteArray>("extension");
    QTest::addColumn<int>("orientation");
    for (const QByteArray &extension : MediaMaker::photoExtensions()) {
        const bool turns = extension.startsWith("jp") || extension == "heic" || extension == "avif";
        for (int orientation = 1; orientation <= (turns ? 8 : 1); ++orientation) {
            QTest::addRow("%s %d", extension.constData(), orientation) << extension << orientation;
        }
    }
}

void ImageDecoderTest::thumbnail() {
    QFETCH(QByteArray, extension);
    QFETCH(int, orientation);
    const FileURL file = url(QStringLiteral("turned.") + QLatin1String(extension));
    QVERIFY(MediaMaker::photo(file, {.size = {640, 480}, .orientation = orientation}));
    const QImage thumbnail = ImageDecoder::thumbnail(file, 320);
    QCOMPARE(thumbnail.size(), QSize(320, 240));
    QCOMPARE(thumbnail.format(), QImage::Format_RGB32);
    QCOMPARE(thumbnail.colorSpace(), QColorSpace(QColorSpace::SRgb));
    QVERIFY(MediaMaker::showsPattern(thumbnail));
    const QImage whole = ImageDecoder::image(file);
    QCOMPARE(whole.size(), QSize(640, 480));
    QVERIFY(MediaMaker::showsPattern(whole));
}

void ImageDecoderTest::tiffOrientation_data() {
    QTest::addColumn<int>("transformation");
    for (int transformation = 0; transformation < 8; ++transformation) {
        QTest::addRow("transformation %d", transformation) << transformation;
    }
}

void ImageDecoderTest::tiffOrientation() {
    QFETCH(int, transformation);
    const auto demanded = QImageIOHandler::Transformations(transformation);
    QImage stored = MediaMaker::pattern({640, 480});
    // The reverse of what a reader does: turn back first, then mirror.
    if (demanded.testFlag(QImageIOHandler::TransformationRotate90)) {
        stored = stored.transformed(QTransform().rotate(-90));
    }
    stored = stored.mirrored(demanded.testFlag(QImageIOHandler::TransformationMirror),
                             demanded.testFlag(QImageIOHandler::TransformationFlip));
    QImageWriter writer(path(QStringLiteral("turned.tiff")), "tiff");
    writer.setTransformation(demanded);
    QVERIFY(writer.write(stored));
    const QImage thumbnail = ImageDecoder::thumbnail(url(QStringLiteral("turned.tiff")), 320);
    QCOMPARE(thumbnail.size(), QSize(320, 240));
    QVERIFY(MediaMaker::showsPattern(thumbnail));
}

void ImageDecoderTest::pixelFormats_data() {
    QTest::addColumn<QImage::Format>("format");
    QTest::addColumn<QByteArray>("container");
    QTest::newRow("16 bit PNG") << QImage::Format_RGBX64 << QByteArray("png");
    QTest::newRow("16 bit PNG with alpha") << QImage::Format_RGBA64 << QByteArray("png");
    QTest::newRow("PNG with alpha") << QImage::Format_ARGB32 << QByteArray("png");
    QTest::newRow("palette PNG") << QImage::Format_Indexed8 << QByteArray("png");
    QTest::newRow("palette BMP") << QImage::Format_Indexed8 << QByteArray("bmp");
    QTest::newRow("16 bit TIFF") << QImage::Format_RGBX64 << QByteArray("tiff");
    QTest::newRow("palette TIFF") << QImage::Format_Indexed8 << QByteArray("tiff");
    QTest::newRow("WebP with alpha") << QImage::Format_ARGB32 << QByteArray("webp");
}

void ImageDecoderTest::pixelFormats() {
    QFETCH(QImage::Format, format);
    QFETCH(QByteArray, container);
    QImage picture = MediaMaker::pattern({640, 480}).convertToFormat(format);
    if (picture.hasAlphaChannel()) {
        // A hole in the middle, away from what showsPattern looks at.
        for (int y = 220; y < 260; ++y) {
            for (int x = 300; x < 340; ++x) {
                picture.setPixelColor(x, y, Qt::transparent);
            }
        }
    }
    const FileURL file = url(QStringLiteral("format.") + QLatin1String(container));
    QVERIFY(picture.save(file.path(), container.constData()));
    const QImage thumbnail = ImageDecoder::thumbnail(file, 320);
    QCOMPARE(thumbnail.size(), QSize(320, 240));
    QVERIFY(MediaMaker::showsPattern(thumbnail));
    QCOMPARE(thumbnail.hasAlphaChannel(), picture.hasAlphaChannel());
    QCOMPARE(thumbnail.pixelColor(160, 120).alpha(), picture.hasAlphaChannel() ? 0 : 255);
}

void ImageDecoderTest::sizes_data() {
    QTest::addColumn<QSize>("stored");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("never enlarged") << QSize(64, 48) << QSize(64, 48);
    QTest::newRow("exactly the limit") << QSize(720, 100) << QSize(720, 100);
    QTest::newRow("one beyond") << QSize(721, 721) << QSize(720, 720);
    QTest::newRow("upright") << QSize(1000, 1500) << QSize(480, 720);
    QTest::newRow("a thread") << QSize(4000, 2) << QSize(720, 1);
    QTest::newRow("odd sides") << QSize(1537, 1023) << QSize(720, 479);
}

void ImageDecoderTest::sizes() {
    QFETCH(QSize, stored);
    QFETCH(QSize, expected);
    QImage picture(stored, QImage::Format_RGB32);
    picture.fill(QColor(200, 100, 50));
    for (const char *format : {"jpg", "png", "tiff", "webp"}) {
        const FileURL file = url(QStringLiteral("size.") + QLatin1String(format));
        QVERIFY(picture.save(file.path(), format, 100));
        const QImage thumbnail = ImageDecoder::thumbnail(file, 720);
        QCOMPARE(thumbnail.size(), expected);
        // Every pixel is filled to the edges, and the mean of one colour is that colour.
        for (const QPoint &point : {QPoint(0, 0), QPoint(expected.width() - 1, expected.height() - 1)}) {
            const QColor colour = thumbnail.pixelColor(point);
            QVERIFY2(std::abs(colour.red() - 200) < 4 && std::abs(colour.green() - 100) < 4 &&
                         std::abs(colour.blue() - 50) < 4,
                     format);
        }
    }
}

void ImageDecoderTest::fullImageIsReducedOnlyBeyondTheLimit() {
    for (const char *extension : {"jpg", "png", "heic"}) {
        const FileURL file = url(QStringLiteral("whole.") + QLatin1String(extension));
        QVERIFY(MediaMaker::photo(file, {.size = {640, 480}}));
        QCOMPARE(ImageDecoder::image(file, 640 * 480).size(), QSize(640, 480));
        QCOMPARE(ImageDecoder::image(file, 160 * 120).size(), QSize(160, 120));
    }
}

void ImageDecoderTest::convertsWideGamut() {
    QImage picture(100, 100, QImage::Format_RGB32);
    picture.fill(QColor(200, 60, 60));
    picture.setColorSpace(QColorSpace::DisplayP3);
    const QColor expected = picture.convertedToColorSpace(QColorSpace(QColorSpace::SRgb)).pixelColor(50, 50);
    for (const char *format : {"png", "jpg", "webp"}) {
        const FileURL file = url(QStringLiteral("wide.") + QLatin1String(format));
        QVERIFY(picture.save(file.path(), format, 100));
        const QColor colour = ImageDecoder::thumbnail(file, 50).pixelColor(25, 25);
        QVERIFY(std::abs(colour.red() - expected.red()) < 5 &&
                std::abs(colour.green() - expected.green()) < 5);
        QVERIFY(colour.red() > 210);
    }
}

void ImageDecoderTest::takesTheFirstPictureOfAnAnimation() {
    // Two whole frames: red, then blue.
    const QByteArray head("GIF89a\x02\0\x02\0\x80\0\0\xFF\0\0\0\0\xFF", 19);
    const auto frame = [](char colour) {
        // Codes of three bits: clear, four pixels, end.
        const quint32 codes = 4U | quint32(colour) << 3 | quint32(colour) << 6 | quint32(colour) << 9 |
                              quint32(colour) << 12 | 5U << 15;
        return QByteArray("!\xF9\x04\0\x0A\0\0\0,\0\0\0\0\x02\0\x02\0\0\x02\x03", 20) +
               littleEndian(codes, 3) + '\0';
    };
    QVERIFY(MediaMaker::write(url(QStringLiteral("two.gif")), head + frame(0) + frame(1) + ';'));
    const QImage image = ImageDecoder::thumbnail(url(QStringLiteral("two.gif")), 720);
    QCOMPARE(image.size(), QSize(2, 2));
    QCOMPARE(image.pixelColor(1, 1), QColor(Qt::red));
}

void ImageDecoderTest::contentDecides() {
    QVERIFY(MediaMaker::photo(url(QStringLiteral("true.png"))));
    QVERIFY(QFile::copy(path(QStringLiteral("true.png")), path(QStringLiteral("named.jpg"))));
    QVERIFY(MediaMaker::showsPattern(ImageDecoder::thumbnail(url(QStringLiteral("named.jpg")), 320)));
    const FileURL latin = FileURL::fromNativePath(m_folder.path().toUtf8() + "/\xE9t\xE9\n.jpg");
    QVERIFY(MediaMaker::photo(latin));
    const QImage thumbnail = ImageDecoder::thumbnail(latin, 320);
    // QTemporaryDir cannot address the name.
    QCOMPARE(::unlink(latin.nativePath().constData()), 0);
    QVERIFY(MediaMaker::showsPattern(thumbnail));
}

void ImageDecoderTest::refuses_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("empty") << QByteArray("");
    QTest::newRow("zeros") << QByteArray(60'000, '\0');
    QTest::newRow("noise") << MediaMaker::noise(60'000);
    QTest::newRow("another kind of picture")
        << QByteArray("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>");
    QTest::newRow("bare signature") << QByteArray("\xFF\xD8\xFF\xE0");
    QTest::newRow("empty box file") << QByteArray("\0\0\0\x18"
                                                  "ftypheic\0\0\0\0heicmif1",
                                                  24);
}

void ImageDecoderTest::refuses() {
    QFETCH(QByteArray, content);
    const FileURL file = url(QStringLiteral("refused.jpg"));
    QFile::remove(file.path());
    QVERIFY(content.isNull() || MediaMaker::write(file, content));
    QVERIFY(ImageDecoder::thumbnail(file, 720).isNull());
    QVERIFY(ImageDecoder::image(file).isNull());
    // What stands in a file's place must not be waited for.
    QFile::remove(file.path());
    QCOMPARE(::mkfifo(file.nativePath().constData(), 0600), 0);
    QVERIFY(ImageDecoder::thumbnail(file, 720).isNull());
}

void ImageDecoderTest::damagedFilesDoNoHarm_data() {
    QTest::addColumn<QByteArray>("extension");
    for (const QByteArray &extension : MediaMaker::photoExtensions()) {
        QTest::newRow(extension.constData()) << extension;
    }
}

void ImageDecoderTest::damagedFilesDoNoHarm() {
    QFETCH(QByteArray, extension);
    const FileURL whole = url(QStringLiteral("whole.") + QLatin1String(extension));
    QVERIFY(MediaMaker::photo(whole));
    const QByteArray content = MediaMaker::read(whole);
    const FileURL damaged = url(QStringLiteral("damaged.") + QLatin1String(extension));
    for (int i = 1; i < 12; ++i) {
        QByteArray bytes = content.left(content.size() * i / 12);
        QVERIFY(MediaMaker::write(damaged, bytes));
        ImageDecoder::thumbnail(damaged, 320);
        bytes = content;
        // The structures near the start suffer most.
        bytes.replace(40 * i, 4, MediaMaker::noise(4, quint32(i)));
        QVERIFY(MediaMaker::write(damaged, bytes));
        const QImage image = ImageDecoder::thumbnail(damaged, 320);
        QVERIFY(image.width() <= 320 && image.height() <= 320);
    }
}

void ImageDecoderTest::staysWithinMemory_data() {
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("PNG, 3.6 gigapixels") << pngBomb(60'000, 60'000, 2);
    QTest::newRow("PNG, 16 bit") << pngBomb(30'000, 30'000, 6);
    QTest::newRow("PNG, greatest sides") << pngBomb(0x7FFFFFFF, 0x7FFFFFFF, 6);
    QTest::newRow("BMP") << bmpBomb(60'000, 60'000);
    QTest::newRow("GIF") << gifBomb();
}

void ImageDecoderTest::staysWithinMemory() {
    QFETCH(QByteArray, content);
    const FileURL file = url(QStringLiteral("bomb"));
    QVERIFY(MediaMaker::write(file, content));
    const qint64 before = peakMemory();
    const QImage thumbnail = ImageDecoder::thumbnail(file, 720);
    QVERIFY(thumbnail.width() <= 720 && thumbnail.height() <= 720);
    const QImage image = ImageDecoder::image(file);
    QVERIFY(qint64(image.width()) * image.height() <= ImageDecoder::fullImagePixels);
    QVERIFY2(peakMemory() - before < 600'000'000, QByteArray::number(peakMemory() - before));
}

void ImageDecoderTest::stopsWhenCancelled() {
    for (const char *extension : {"jpg", "png", "heic"}) {
        const FileURL file = url(QStringLiteral("cancelled.") + QLatin1String(extension));
        QVERIFY(MediaMaker::photo(file));
        QVERIFY(ImageDecoder::image(file, ImageDecoder::fullImagePixels, [] { return true; }).isNull());
    }
}

QTEST_GUILESS_MAIN(ImageDecoderTest)
#include "ImageDecoderTest.moc"
