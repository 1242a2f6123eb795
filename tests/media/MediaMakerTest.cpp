#include "MediaMaker.h"

#include <QDir>
#include <QImageReader>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

/// The other tests trust these media, so what they are is checked with tools that Mosa does not use.
class MediaMakerTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_folder;

    FileURL file(const QString &name) const { return FileURL::fromPath(m_folder.filePath(name)); }
    /// The first frame as ffmpeg shows it, turned as the display matrix demands.
    QImage frame(const FileURL &video) const {
        const QString still = m_folder.filePath(QStringLiteral("still.png"));
        QProcess::execute(QStringLiteral("ffmpeg"),
                          {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y"),
                           QStringLiteral("-i"), video.path(), QStringLiteral("-frames:v"),
                           QStringLiteral("1"), still});
        QImage image(still);
        QFile::remove(still);
        return image;
    }

private Q_SLOTS:
    void photos_data() {
        QTest::addColumn<QString>("extension");
        for (const QByteArray &extension : MediaMaker::photoExtensions()) {
            QTest::newRow(extension.constData()) << QString::fromLatin1(extension);
        }
    }

    void photos() {
        QFETCH(QString, extension);
        const FileURL url = file(QStringLiteral("photo.") + extension);
        QVERIFY(MediaMaker::photo(url));
        QVERIFY(MediaMaker::read(url).size() >= MediaMaker::mediaSize);
        if (!extension.startsWith(u"he") && extension != u"avif") {
            const QImage image(url.path());
            QCOMPARE(image.size(), QSize(640, 480));
            QVERIFY(MediaMaker::showsPattern(image));
            QVERIFY(!MediaMaker::showsPattern(image.mirrored(true, false)));
            QVERIFY(!MediaMaker::showsPattern(image.mirrored(true, true)));
        }
    }

    void orientedPhotos() {
        for (int orientation = 1; orientation <= 8; ++orientation) {
            const FileURL url = file(QStringLiteral("%1.jpg").arg(orientation));
            QVERIFY(MediaMaker::photo(url, {.size = {300, 200}, .orientation = orientation}));
            QImageReader reader(url.path());
            QCOMPARE(reader.size(), orientation >= 5 ? QSize(200, 300) : QSize(300, 200));
            reader.setAutoTransform(true);
            const QImage image = reader.read();
            QCOMPARE(image.size(), QSize(300, 200));
            QVERIFY2(MediaMaker::showsPattern(image), qPrintable(QString::number(orientation)));
        }
    }

    void turnedContainers() {
        for (const QString &extension : {QStringLiteral("heic"), QStringLiteral("avif")}) {
            for (int orientation = 1; orientation <= 8; ++orientation) {
                const FileURL url = file(QStringLiteral("turned.") + extension);
                QVERIFY(MediaMaker::photo(url, {.size = {384, 256}, .orientation = orientation}));
                const QString decoded = m_folder.filePath(QStringLiteral("turned.png"));
                QCOMPARE(QProcess::execute(QStringLiteral("heif-convert"), {url.path(), decoded}), 0);
                const QImage image(decoded);
                QCOMPARE(image.size(), QSize(384, 256));
                QVERIFY2(MediaMaker::showsPattern(image), qPrintable(QString::number(orientation)));
            }
        }
    }

    void videos_data() {
        QTest::addColumn<QString>("extension");
        for (const QByteArray &extension : MediaMaker::videoExtensions()) {
            QTest::newRow(extension.constData()) << QString::fromLatin1(extension);
        }
    }

    void videos() {
        QFETCH(QString, extension);
        const FileURL url = file(QStringLiteral("video.") + extension);
        QVERIFY(MediaMaker::video(url));
        QVERIFY(MediaMaker::read(url).size() >= MediaMaker::mediaSize);
        const QImage image = frame(url);
        QCOMPARE(image.size(), QSize(320, 240));
        QVERIFY(MediaMaker::showsPattern(image));
    }

    void rotatedVideos() {
        for (const int rotation : {90, 180, 270}) {
            const FileURL url = file(QStringLiteral("%1.mp4").arg(rotation));
            QVERIFY(MediaMaker::video(url, {.size = {160, 240}, .rotation = rotation}));
            const QImage image = frame(url);
            QCOMPARE(image.size(), QSize(160, 240));
            QVERIFY2(MediaMaker::showsPattern(image), qPrintable(QString::number(rotation)));
        }
    }
};

QTEST_GUILESS_MAIN(MediaMakerTest)
#include "MediaMakerTest.moc"
