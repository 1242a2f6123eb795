// Pictures that decoders are known to get wrong.

#include "ExifOrientation.h"
#include "ImageDecoder.h"
#include "MediaMaker.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

#include <libheif/heif.h>

using namespace Qt::StringLiterals;

namespace {

template <auto Free>
struct Freer {
    template <typename T>
    void operator()(T *handle) const {
        Free(handle);
    }
};

/// As the decoder that libheif brings along sees it.
QImage decodedByDefault(const FileURL &file) {
    const std::unique_ptr<heif_context, Freer<heif_context_free>> context(heif_context_alloc());
    heif_context_read_from_file(context.get(), file.nativePath().constData(), nullptr);
    heif_image_handle *primary = nullptr;
    heif_context_get_primary_image_handle(context.get(), &primary);
    const std::unique_ptr<heif_image_handle, Freer<heif_image_handle_release>> handle(primary);
    const std::unique_ptr<heif_decoding_options, Freer<heif_decoding_options_free>> options(
        heif_decoding_options_alloc());
    options->convert_hdr_to_8bit = 1;
    options->decoder_id = "libde265";
    heif_image *decoded = nullptr;
    heif_decode_image(primary, &decoded, heif_colorspace_RGB, heif_chroma_interleaved_RGBA, options.get());
    const std::unique_ptr<heif_image, Freer<heif_image_release>> image(decoded);
    if (decoded == nullptr) {
        return {};
    }
    int stride = 0;
    const uint8_t *plane = heif_image_get_plane_readonly(decoded, heif_channel_interleaved, &stride);
    return QImage(plane, heif_image_get_width(decoded, heif_channel_interleaved),
                  heif_image_get_height(decoded, heif_channel_interleaved), stride, QImage::Format_RGBA8888)
        .convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

/// The largest difference of any channel.
int difference(const QImage &a, const QImage &b) {
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        const uchar *left = a.constScanLine(y);
        const uchar *right = b.constScanLine(y);
        for (int i = 0; i < a.width() * 4; ++i) {
            largest = std::max(largest, std::abs(left[i] - right[i]));
        }
    }
    return largest;
}

} // namespace

class HardImagesTest : public QObject {
    Q_OBJECT

    FileURL url(const char *name) const { return FileURL::fromPath(m_folder.filePath(QLatin1String(name))); }

    QTemporaryDir m_folder;

    bool run(const QString &program, const QByteArray &arguments) const {
        QProcess process;
        process.setWorkingDirectory(m_folder.path());
        process.start(program, QString::fromLatin1(arguments).split(u' '));
        return process.waitForFinished(120'000) && process.exitCode() == 0;
    }

private Q_SLOTS:
    void initTestCase() {
        QVERIFY(m_folder.isValid());
        QVERIFY(MediaMaker::pattern({640, 480}).save(m_folder.filePath(u"source.png"_s)));
        QImage withHole = MediaMaker::pattern({640, 480}).convertToFormat(QImage::Format_ARGB32);
        for (int y = 200; y < 280; ++y) {
            for (int x = 280; x < 360; ++x) {
                withHole.setPixelColor(x, y, Qt::transparent);
            }
        }
        QVERIFY(withHole.save(m_folder.filePath(u"hole.png"_s)));
    }

    void exifOrientation_data() {
        QTest::addColumn<QByteArray>("tiff");
        QTest::addColumn<int>("expected");
        const QByteArray body = MediaMaker::exifOrientation(6, false);
        QTest::newRow("big or little endian, 6") << body << int(QImageIOHandler::TransformationRotate90);
        QTest::newRow("empty") << QByteArray() << 0;
        QTest::newRow("no TIFF") << QByteArray(64, 'x') << 0;
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

    void jpegVariants_data() {
        QTest::addColumn<QByteArray>("options");
        QTest::newRow("CMYK") << "-colorspace CMYK -quality 90"_ba;
        QTest::newRow("grey") << "-colorspace Gray -quality 90"_ba;
        QTest::newRow("progressive") << "-interlace JPEG -quality 90"_ba;
        QTest::newRow("no subsampling") << "-sampling-factor 4:4:4 -quality 90"_ba;
        QTest::newRow("4:1:1") << "-sampling-factor 4x1,1x1,1x1 -quality 90"_ba;
    }

    void jpegVariants() {
        QFETCH(QByteArray, options);
        if (!run(u"convert"_s, "source.png " + options + " variant.jpg")) {
            QSKIP("ImageMagick is not installed");
        }
        for (const int size : {640, 320, 150}) {
            const QImage image = ImageDecoder::thumbnail(url("variant.jpg"), size);
            QCOMPARE(image.width(), size);
            if (options.contains("Gray")) {
                const QColor colour = image.pixelColor(size / 4, size / 8);
                QVERIFY(colour.red() == colour.green() && colour.red() > 20);
            } else {
                QVERIFY(MediaMaker::showsPattern(image));
            }
        }
    }

    void cutJpegShowsWhatIsThere() {
        QVERIFY(MediaMaker::photo(url("whole.jpg"), {.size = {640, 480}, .minimumBytes = 0}));
        const QByteArray content = MediaMaker::read(url("whole.jpg"));
        QVERIFY(MediaMaker::write(url("cut.jpg"), content.left(content.size() * 3 / 4)));
        const QImage image = ImageDecoder::thumbnail(url("cut.jpg"), 320);
        QCOMPARE(image.size(), QSize(320, 240));
        QVERIFY(image.pixelColor(80, 60).red() > 150);
        QVERIFY(image.pixelColor(240, 60).green() > 100);
    }

    void hevcMatchesTheDefaultDecoder_data() {
        QTest::addColumn<QByteArray>("arguments");
        QTest::newRow("8 bit") << "-p preset=ultrafast -q 80 source.png -o coded.heic"_ba;
        QTest::newRow("10 bit") << "-p preset=ultrafast -q 80 -b 10 source.png -o coded.heic"_ba;
        QTest::newRow("alpha") << "-p preset=ultrafast -q 80 hole.png -o coded.heic"_ba;
        QTest::newRow("4:4:4") << "-p preset=ultrafast -q 80 -p chroma=444 source.png -o coded.heic"_ba;
    }

    void hevcMatchesTheDefaultDecoder() {
        QFETCH(QByteArray, arguments);
        if (!run(u"heif-enc"_s, arguments)) {
            QSKIP("heif-enc is not installed or cannot encode this");
        }
        const QImage expected = decodedByDefault(url("coded.heic"));
        if (expected.isNull()) {
            QSKIP("libheif has no decoder of that name");
        }
        const QImage image = ImageDecoder::image(url("coded.heic"));
        QCOMPARE(image.size(), expected.size());
        QCOMPARE(image.hasAlphaChannel(), arguments.contains("hole"));
        QVERIFY(MediaMaker::showsPattern(image));
        // Decoders of the format agree to the bit; only conversions may round.
        const QImage same = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        QVERIFY2(difference(same, expected) <= 2, QByteArray::number(difference(same, expected)));
    }
};

QTEST_GUILESS_MAIN(HardImagesTest)
#include "HardImagesTest.moc"
