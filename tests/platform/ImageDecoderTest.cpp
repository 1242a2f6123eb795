#include "ImageDecoder.h"

#include "Bytes.h"
#include "ExifOrientation.h"
#include "MediaMaker.h"
#include "TemporaryFolder.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFile>
#include <QImageWriter>
#include <QProcess>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace Bytes;

namespace {

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
    return big(content.size()) + type + content + big(crc(type + content));
}

QByteArray encoded(const QImage &image, const char *format, QImageIOHandler::Transformations turn = {}) {
    QBuffer buffer;
    QImageWriter writer(&buffer, format);
    writer.setQuality(100);
    writer.setTransformation(turn);
    return writer.write(image) ? buffer.data() : QByteArray();
}

QByteArray pngWithExif(const QImage &image, const QByteArray &exif) {
    constexpr qsizetype behindTheHeader = 33;
    return encoded(image, "png").insert(behindTheHeader, pngChunk("eXIf", exif));
}

QByteArray webpWithExif(const QImage &image, const QByteArray &exif) {
    const QByteArray size = little(quint32(image.width() - 1), 3) + little(quint32(image.height() - 1), 3);
    const QByteArray chunks = "WEBPVP8X" + little(10) + little(8) + size + encoded(image, "webp").mid(12) +
                              "EXIF" + little(quint32(exif.size())) + exif;
    return "RIFF" + little(quint32(chunks.size())) + chunks;
}

/// A few hundred bytes that declare a picture of any size.
QByteArray pngBomb(quint32 width, quint32 height, char colourType) {
    const QByteArray header = big(width) + big(height) + '\x08' + colourType + QByteArray(3, '\0');
    return "\x89PNG\r\n\x1A\n"_ba + pngChunk("IHDR", header) +
           pngChunk("IDAT", qCompress(QByteArray(100'000, '\0')).mid(4)) + pngChunk("IEND", {});
}

/// 4 gigapixels; the marker tells whether all at once or progressively.
QByteArray jpegBomb(char frameMarker) {
    const QByteArray tables = "\xFF\xDB\0\x43\0"_ba + QByteArray(64, '\1');
    const QByteArray frame =
        "\xFF"_ba + frameMarker + "\0\x11\x08\xFF\xDC\xFF\xDC"_ba + "\3\1\x22\0\2\x11\0\3\x11\0"_ba;
    return "\xFF\xD8"_ba + tables + frame + "\xFF\xDA\0\x0C\3\1\0\2\0\3\0\0\0\0"_ba + QByteArray(2000, '\0');
}

qint64 peakMemory() {
    QFile status(u"/proc/self/status"_s);
    const QByteArray content = status.open(QIODevice::ReadOnly) ? status.readAll() : QByteArray();
    const qsizetype at = content.indexOf("VmHWM:");
    return at < 0 ? 0 : content.mid(at + 6, content.indexOf('k', at) - at - 6).trimmed().toLongLong() * 1024;
}

/// Transparent in the middle, away from what showsPattern looks at.
QImage withHole(const QImage &image) {
    QImage picture = image.convertToFormat(QImage::Format_ARGB32);
    for (int i = 0; i < 40 * 40; ++i) {
        picture.setPixelColor(300 + i % 40, 220 + i / 40, Qt::transparent);
    }
    return picture;
}

bool isNear(const QColor &a, const QColor &b) {
    return std::abs(a.red() - b.red()) < 5 && std::abs(a.green() - b.green()) < 5 &&
           std::abs(a.blue() - b.blue()) < 5;
}

} // namespace

class ImageDecoderTest : public QObject {
    Q_OBJECT

    TemporaryFolder m_folder;

    FileURL made(const QByteArray &content) const {
        const FileURL file = m_folder.at("made");
        return MediaMaker::write(file, content) ? file : FileURL();
    }

private Q_SLOTS:
    void thumbnail_data() {
        QTest::addColumn<QByteArray>("extension");
        QTest::addColumn<int>("orientation");
        for (const QByteArray &extension : MediaMaker::photoExtensions()) {
            const bool turns = extension.startsWith("jp") || extension == "heic" || extension == "avif";
            for (int orientation = 1; orientation <= (turns ? 8 : 1); ++orientation) {
                QTest::addRow("%s %d", extension.constData(), orientation) << extension << orientation;
            }
        }
    }

    void thumbnail() {
        QFETCH(QByteArray, extension);
        QFETCH(int, orientation);
        const FileURL file = m_folder.at("turned." + extension);
        QVERIFY(MediaMaker::photo(file, {.size = {640, 480}, .orientation = orientation}));
        const QImage thumbnail = ImageDecoder::thumbnail(file, 320);
        QCOMPARE(thumbnail.size(), QSize(320, 240));
        QCOMPARE(thumbnail.format(), QImage::Format_RGB32);
        QCOMPARE(thumbnail.colorSpace(), QColorSpace(QColorSpace::SRgb));
        QVERIFY(MediaMaker::showsPattern(thumbnail));
        const QImage whole = ImageDecoder::image(file);
        QCOMPARE(whole.size(), QSize(640, 480));
        QVERIFY(MediaMaker::showsPattern(whole));
        QCOMPARE(ImageDecoder::image(file, qint64(160) * 120).size(), QSize(160, 120));
    }

    /// The formats whose metadata Qt's readers or writers do not know, or that carry them in their own way.
    void turnedByMetadata() {
        const QImage stored = MediaMaker::pattern({640, 480}).transformed(QTransform().rotate(-90));
        const QByteArray exif = MediaMaker::exifOrientation(6, false);
        for (const QByteArray &content :
             {encoded(stored, "tiff", QImageIOHandler::TransformationRotate90), pngWithExif(stored, exif),
              webpWithExif(stored, exif), webpWithExif(stored, "Exif\0\0"_ba + exif)}) {
            const QImage thumbnail = ImageDecoder::thumbnail(made(content), 320);
            QCOMPARE(thumbnail.size(), QSize(320, 240));
            QVERIFY(MediaMaker::showsPattern(thumbnail));
        }
    }

    void pixelFormats_data() {
        QTest::addColumn<QImage::Format>("format");
        QTest::addColumn<QByteArray>("container");
        QTest::newRow("16 bit PNG") << QImage::Format_RGBX64 << "png"_ba;
        QTest::newRow("PNG with alpha") << QImage::Format_ARGB32 << "png"_ba;
        QTest::newRow("palette PNG") << QImage::Format_Indexed8 << "png"_ba;
        QTest::newRow("16 bit TIFF") << QImage::Format_RGBX64 << "tiff"_ba;
        QTest::newRow("palette TIFF") << QImage::Format_Indexed8 << "tiff"_ba;
        QTest::newRow("WebP with alpha") << QImage::Format_ARGB32 << "webp"_ba;
    }

    void pixelFormats() {
        QFETCH(QImage::Format, format);
        QFETCH(QByteArray, container);
        QImage picture = MediaMaker::pattern({640, 480}).convertToFormat(format);
        const bool alpha = picture.hasAlphaChannel();
        if (alpha) {
            picture = withHole(picture).convertToFormat(format);
        }
        const QImage thumbnail = ImageDecoder::thumbnail(made(encoded(picture, container.constData())), 320);
        QCOMPARE(thumbnail.size(), QSize(320, 240));
        QVERIFY(MediaMaker::showsPattern(thumbnail));
        QCOMPARE(thumbnail.hasAlphaChannel(), alpha);
        QCOMPARE(thumbnail.pixelColor(160, 120).alpha(), alpha ? 0 : 255);
    }

    void sizes_data() {
        QTest::addColumn<QSize>("stored");
        QTest::addColumn<QSize>("expected");
        QTest::newRow("never enlarged") << QSize(64, 48) << QSize(64, 48);
        QTest::newRow("one beyond") << QSize(721, 721) << QSize(720, 720);
        QTest::newRow("a thread") << QSize(4000, 2) << QSize(720, 1);
        QTest::newRow("odd sides") << QSize(1537, 1023) << QSize(720, 479);
    }

    void sizes() {
        QFETCH(QSize, stored);
        QFETCH(QSize, expected);
        QImage picture(stored, QImage::Format_RGB32);
        picture.fill(QColor(200, 100, 50));
        for (const char *format : {"jpg", "png", "tiff", "webp"}) {
            const QImage thumbnail = ImageDecoder::thumbnail(made(encoded(picture, format)), 720);
            QCOMPARE(thumbnail.size(), expected);
            // Every pixel is filled to the edges, and the mean of one colour is that colour.
            QVERIFY2(isNear(thumbnail.pixelColor(0, 0), QColor(200, 100, 50)), format);
            QVERIFY2(isNear(thumbnail.pixelColor(expected.width() - 1, expected.height() - 1),
                            QColor(200, 100, 50)),
                     format);
        }
    }

    void convertsWideGamut() {
        QImage picture(100, 100, QImage::Format_RGB32);
        picture.fill(QColor(200, 60, 60));
        picture.setColorSpace(QColorSpace::DisplayP3);
        const QColor expected =
            picture.convertedToColorSpace(QColorSpace(QColorSpace::SRgb)).pixelColor(50, 50);
        QVERIFY(expected.red() > 210);
        for (const char *format : {"png", "jpg", "webp"}) {
            const QImage thumbnail = ImageDecoder::thumbnail(made(encoded(picture, format)), 50);
            QVERIFY2(isNear(thumbnail.pixelColor(25, 25), expected), format);
        }
    }

    void contentDecides() {
        const FileURL odd = m_folder.at("\xE9t\xE9\n.jpg");
        for (const char *format : {"png", "ico"}) {
            QVERIFY(MediaMaker::write(odd, encoded(MediaMaker::pattern({256, 256}), format)));
            QVERIFY(MediaMaker::showsPattern(ImageDecoder::thumbnail(odd, 320)));
        }
    }

    void refuses_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << ""_ba;
        QTest::newRow("zeros") << QByteArray(60'000, '\0');
        QTest::newRow("noise") << MediaMaker::noise(60'000);
        QTest::newRow("another kind") << "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"_ba;
        QTest::newRow("bare signature") << "\xFF\xD8\xFF\xE0"_ba;
        QTest::newRow("empty box file") << "\0\0\0\x18"
                                           "ftypheic\0\0\0\0heicmif1"_ba;
    }

    void refuses() {
        QFETCH(QByteArray, content);
        QVERIFY(ImageDecoder::thumbnail(made(content), 720).isNull());
        QVERIFY(ImageDecoder::image(made(content)).isNull());
        // What stands in a file's place must not be waited for.
        const FileURL pipe = m_folder.at("pipe.jpg");
        ::mkfifo(pipe.nativePath().constData(), 0600);
        QVERIFY(ImageDecoder::thumbnail(pipe, 720).isNull());
    }

    void exifOrientation_data() {
        QTest::addColumn<QByteArray>("tiff");
        QTest::addColumn<int>("expected");
        const QByteArray body = MediaMaker::exifOrientation(6, false);
        QTest::newRow("big or little endian, 6") << body << int(QImageIOHandler::TransformationRotate90);
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("directory beyond the end") << QByteArray("II*\0\xFF\xFF\xFF\x7F\0\0", 10) << 0;
        QTest::newRow("many entries, none there") << QByteArray("II*\0\x08\0\0\0\xFF\xFF", 10) << 0;
        QTest::newRow("out of range")
            << QByteArray("II*\0\x08\0\0\0\1\0\x12\1\3\0\1\0\0\0\x63\0\0\0", 22) << 0;
        QTest::newRow("little endian, 8") << QByteArray("II*\0\x08\0\0\0\1\0\x12\1\3\0\1\0\0\0\x08\0\0\0", 22)
                                          << int(QImageIOHandler::TransformationRotate270);
        QTest::newRow("big endian, 2") << QByteArray("MM\0*\0\0\0\x08\0\1\1\x12\0\3\0\0\0\1\0\2\0\0", 22)
                                       << int(QImageIOHandler::TransformationMirror);
    }

    void exifOrientation() {
        QFETCH(QByteArray, tiff);
        QFETCH(int, expected);
        QCOMPARE(int(ExifOrientation::transformation(tiff)), expected);
        // A cut structure is never read beyond.
        for (qsizetype length = 0; length < tiff.size(); ++length) {
            const QByteArray cut = tiff.left(length);
            ExifOrientation::transformation(cut);
        }
    }

    void madeByOtherPrograms_data() {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QByteArray>("arguments");
        const auto jpeg = [](const char *name, const QByteArray &options) {
            QTest::newRow(name) << u"convert"_s << "source.png -quality 95 " + options + " jpeg:made";
        };
        jpeg("CMYK JPEG", "-colorspace CMYK");
        jpeg("grey JPEG", "-colorspace Gray");
        jpeg("progressive JPEG", "-interlace JPEG");
        jpeg("JPEG of whole colours", "-sampling-factor 4:4:4");
        jpeg("JPEG of quarter colours", "-sampling-factor 4x1,1x1,1x1");
        const auto heic = [](const char *name, const QByteArray &options, const char *source = "source.png") {
            QTest::newRow(name) << u"heif-enc"_s
                                << "-p preset=ultrafast -q 90 " + options + source + " -o made";
        };
        heic("HEIC", "");
        heic("HEIC of 10 bit", "-b 10 ");
        heic("HEIC of whole colours", "-p chroma=444 ");
        heic("HEIC with alpha", "", "hole.png");
    }

    /// Decoders are apt to mistake the range and the matrix of colours, or a plane for another.
    void madeByOtherPrograms() {
        QFETCH(QString, program);
        QFETCH(QByteArray, arguments);
        const QImage source = MediaMaker::pattern({640, 480});
        QVERIFY(source.save(m_folder.at("source.png").path()));
        QVERIFY(withHole(source).save(m_folder.at("hole.png").path()));
        QProcess process;
        process.setWorkingDirectory(m_folder.url().path());
        process.start(program, QString::fromLatin1(arguments).split(u' '));
        if (!process.waitForFinished(120'000) || process.exitCode() != 0) {
            QSKIP("the program is not installed or cannot encode this");
        }
        for (const int size : {640, 320, 150}) {
            const QImage image = ImageDecoder::thumbnail(m_folder.at("made"), size);
            QCOMPARE(image.width(), size);
            QCOMPARE(image.hasAlphaChannel(), arguments.contains("hole"));
            if (arguments.contains("Gray")) {
                QVERIFY(image.allGray());
                continue;
            }
            const QImage expected = source.scaled(4, 4, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            const QImage seen = image.scaled(4, 4, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
            for (const QPoint &corner : {QPoint(0, 0), QPoint(3, 0), QPoint(0, 3), QPoint(3, 3)}) {
                QVERIFY2(isNear(seen.pixelColor(corner), expected.pixelColor(corner)),
                         qPrintable(seen.pixelColor(corner).name() + expected.pixelColor(corner).name()));
            }
        }
    }

    void cutJpegShowsWhatIsThere() {
        QVERIFY(MediaMaker::photo(m_folder.at("whole.jpg"), {.size = {640, 480}, .minimumBytes = 0}));
        const QByteArray content = MediaMaker::read(m_folder.at("whole.jpg"));
        const QImage image = ImageDecoder::thumbnail(made(content.left(content.size() * 3 / 4)), 320);
        QCOMPARE(image.size(), QSize(320, 240));
        QVERIFY(image.pixelColor(80, 60).red() > 150);
        QVERIFY(image.pixelColor(240, 60).green() > 100);
    }

    void damagedFilesDoNoHarm_data() {
        QTest::addColumn<QByteArray>("extension");
        for (const QByteArray &extension : MediaMaker::photoExtensions()) {
            QTest::newRow(extension.constData()) << extension;
        }
    }

    void damagedFilesDoNoHarm() {
        QFETCH(QByteArray, extension);
        const FileURL whole = m_folder.at("whole." + extension);
        QVERIFY(MediaMaker::photo(whole));
        for (const QByteArray &variant : MediaMaker::damaged(MediaMaker::read(whole), 20)) {
            const QImage image = ImageDecoder::thumbnail(made(variant), 320);
            QVERIFY(image.width() <= 320 && image.height() <= 320);
        }
    }

    void staysWithinMemory_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("PNG, 3.6 gigapixels") << pngBomb(60'000, 60'000, 2);
        QTest::newRow("PNG, greatest sides") << pngBomb(0x7FFFFFFF, 0x7FFFFFFF, 6);
        QTest::newRow("BMP") << "BM" + little(1000) + little(0) + little(54) + little(40) + little(60'000) +
                                    little(60'000) + little(1, 2) + little(24, 2) +
                                    QByteArray(24 + 900, '\0');
        QByteArray tiff = "II*\0\x08\0\0\0\x06\0"_ba;
        for (const auto &[tag, value] :
             {std::pair(256, 0x7FFFFFFF), {257, 0x7FFFFFFF}, {258, 8}, {262, 1}, {273, 8}, {279, 100}}) {
            tiff += little(tag, 2) + little(4, 2) + little(1) + little(value);
        }
        QTest::newRow("TIFF, greatest sides") << tiff + QByteArray(1000, '\0');
        QTest::newRow("GIF") << "GIF89a\xFF\xFF\xFF\xFF\x80\0\0"_ba + QByteArray(6, '\0') +
                                    ",\0\0\0\0\xFF\xFF\xFF\xFF\0\x02\x02\x44\x01\0;"_ba;
        QTest::newRow("JPEG") << jpegBomb('\xC0');
        QTest::newRow("JPEG, progressive") << jpegBomb('\xC2');
    }

    void staysWithinMemory() {
        QFETCH(QByteArray, content);
        const FileURL file = made(content);
        const qint64 before = peakMemory();
        const QImage thumbnail = ImageDecoder::thumbnail(file, 720);
        QVERIFY(thumbnail.width() <= 720 && thumbnail.height() <= 720);
        QVERIFY2(peakMemory() - before < 600'000'000, QByteArray::number(peakMemory() - before));
        if (!content.startsWith("\xFF\xD8")) {
            const QImage image = ImageDecoder::image(file);
            QVERIFY(qint64(image.width()) * image.height() <= ImageDecoder::fullImagePixels);
            QVERIFY2(peakMemory() - before < 600'000'000, QByteArray::number(peakMemory() - before));
        }
    }

    void stopsWhenCancelled() {
        for (const char *name : {"a.jpg", "a.png", "a.heic"}) {
            QVERIFY(MediaMaker::photo(m_folder.at(name)));
            QVERIFY(ImageDecoder::image(m_folder.at(name), ImageDecoder::fullImagePixels, [] {
                        return true;
                    }).isNull());
        }
    }
};

QTEST_GUILESS_MAIN(ImageDecoderTest)
#include "ImageDecoderTest.moc"
