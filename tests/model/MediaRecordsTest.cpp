#include "MediaFile.h"
#include "MediaKind.h"

#include <QTest>

using namespace Qt::StringLiterals;

class MediaRecordsTest : public QObject {
    Q_OBJECT

    static MediaFile sample() {
        return {.url = FileURL::fromNativePath("/a/b.mp4"),
                .kind = MediaKind::video,
                .addedAt = Timestamp(std::chrono::seconds(7)),
                .aspectRatio = 1.5};
    }

private Q_SLOTS:
    void kinds() {
        for (const MediaKind kind : {MediaKind::video, MediaKind::photo}) {
            QCOMPARE(mediaKindFromRawValue(rawValue(kind)), std::optional(kind));
        }
        QCOMPARE(rawValue(MediaKind::video), u"video"_s);
        QCOMPARE(rawValue(MediaKind::photo), u"photo"_s);
        for (const char *other : {"Video", "photo ", "", "videos"}) {
            QVERIFY(!mediaKindFromRawValue(QString::fromLatin1(other)));
        }
    }

    void everyFieldCounts() {
        const MediaFile file = sample();
        QList<MediaFile> others(4, file);
        others[0].url = FileURL::fromNativePath("/a/c.mp4");
        others[1].kind = MediaKind::photo;
        others[2].addedAt += std::chrono::nanoseconds(1);
        others[3].aspectRatio = 1.25;
        for (const MediaFile &other : others) {
            QVERIFY(other != file);
            QVERIFY(qHash(other) != qHash(file));
        }
        QCOMPARE(others[3].id(), file.id());
        QCOMPARE(sample(), file);
        QCOMPARE(qHash(sample()), qHash(file));
    }

    void signedZerosAreOne() {
        MediaFile plus = sample();
        MediaFile minus = sample();
        plus.aspectRatio = 0.0;
        minus.aspectRatio = -0.0;
        QCOMPARE(plus, minus);
        QCOMPARE(qHash(plus), qHash(minus));
    }
};

QTEST_GUILESS_MAIN(MediaRecordsTest)
#include "MediaRecordsTest.moc"
