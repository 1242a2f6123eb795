#include "NewestFirst.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

MediaFile file(const QByteArray &path, qint64 nanoseconds) {
    return {.url = FileURL::fromNativePath(path),
            .kind = MediaKind::photo,
            .addedAt = Timestamp(std::chrono::nanoseconds(nanoseconds))};
}

QString paths(const QList<MediaFile> &files) {
    QStringList list;
    for (const MediaFile &each : files) {
        list << each.id();
    }
    return list.join(u' ');
}

} // namespace

class NewestFirstTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void media() {
        MediaFile undated = file("/0undated", 0);
        undated.addedAt = Timestamp::min();
        const QList<MediaFile> files{
            undated,           file("/clip10.mp4", 5), file("/c.jpg", 5), file("/old", -100),
            file("/x/s", 5),   file("/clip2.mp4", 5),  file("/a/S", 5),   file("/B.jpg", 5),
            file("/newer", 9), file("/znewest", 10),   file("/m/s", 5)};
        QList<MediaFile> sorted = files;
        sortNewestFirst(sorted);
        // Names alone count, and of equal names the earlier stays the earlier.
        QCOMPARE(paths(sorted),
                 "/znewest /newer /B.jpg /c.jpg /clip2.mp4 /clip10.mp4 /x/s /a/S /m/s /old /0undated"_L1);
        QVERIFY2(files.first() == undated, "a list that shares the data was sorted, too");
    }
};

QTEST_GUILESS_MAIN(NewestFirstTest)
#include "NewestFirstTest.moc"
