#include "NewestFirst.h"

#include <QTest>

#include <random>

namespace {

MediaFile file(const char *path, qint64 seconds) {
    return {.url = FileURL::fromNativePath(path),
            .kind = MediaKind::photo,
            .addedAt = Timestamp(std::chrono::seconds(seconds))};
}

QStringList paths(const QList<MediaFile> &files) {
    QStringList list;
    for (const MediaFile &each : files) {
        list << each.id();
    }
    return list;
}

} // namespace

class NewestFirstTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void media() {
        MediaFile undated = file("/0 undated", 0);
        undated.addedAt = Timestamp::min();
        QList<MediaFile> files{undated,
                               file("/clip 10.mp4", 5),
                               file("/c.jpg", 5),
                               file("/old", -100),
                               file("/x/same.jpg", 5),
                               file("/clip 2.mp4", 5),
                               file("/a/SAME.jpg", 5),
                               file("/B.jpg", 5),
                               file("/z newest", 9),
                               file("/m/same.jpg", 5)};
        sortNewestFirst(files);
        // Names alone count, and of equal names the earlier stays the earlier.
        QCOMPARE(paths(files), QStringList({QStringLiteral("/z newest"), QStringLiteral("/B.jpg"),
                                            QStringLiteral("/c.jpg"), QStringLiteral("/clip 2.mp4"),
                                            QStringLiteral("/clip 10.mp4"), QStringLiteral("/x/same.jpg"),
                                            QStringLiteral("/a/SAME.jpg"), QStringLiteral("/m/same.jpg"),
                                            QStringLiteral("/old"), QStringLiteral("/0 undated")}));
    }

    void nanosecondsCount() {
        QList<MediaFile> files{file("/a", 1), file("/b", 1)};
        files[1].addedAt += std::chrono::nanoseconds(1);
        sortNewestFirst(files);
        QCOMPARE(paths(files), QStringList({QStringLiteral("/b"), QStringLiteral("/a")}));
    }

    void sharedListsStay() {
        const QList<MediaFile> original{file("/a", 1), file("/c", 2), file("/b", 2)};
        QList<MediaFile> copy = original;
        sortNewestFirst(copy);
        QCOMPARE(paths(original),
                 QStringList({QStringLiteral("/a"), QStringLiteral("/c"), QStringLiteral("/b")}));
        QCOMPARE(paths(copy),
                 QStringList({QStringLiteral("/b"), QStringLiteral("/c"), QStringLiteral("/a")}));
    }

    /// Against the plain rule, applied by insertion.
    void anyOrderOfInput() {
        std::mt19937 random(11);
        for (int round = 0; round < 200; ++round) {
            QList<MediaFile> files;
            const auto count = quint32(random() % 30);
            for (quint32 i = 0; i < count; ++i) {
                const QByteArray name =
                    "/" + QByteArray::number(i) + "/n " + QByteArray::number(random() % 12);
                files << file(name.constData(), random() % 4);
            }
            QList<MediaFile> expected;
            const auto number = [](const MediaFile &each) { return each.url.nativeName().mid(2).toInt(); };
            for (const MediaFile &each : files) {
                const auto place =
                    std::find_if(expected.begin(), expected.end(), [&](const MediaFile &other) {
                        return each.addedAt == other.addedAt ? number(each) < number(other)
                                                             : each.addedAt > other.addedAt;
                    });
                expected.insert(place, each);
            }
            sortNewestFirst(files);
            QCOMPARE(paths(files), paths(expected));
        }
    }

    void cards() {
        QList<FolderCard> folders;
        for (const char *name : {"b", "Trip 10", "a", "trip 9", "B", "Äh"}) {
            folders << FolderCard{
                .url = {}, .name = QString::fromUtf8(name), .itemCount = 0, .representative = {}};
        }
        sortByName(folders);
        QStringList names;
        for (const FolderCard &card : folders) {
            names << card.name;
        }
        QCOMPARE(names,
                 QStringList({QStringLiteral("a"), QStringLiteral("Äh"), QStringLiteral("b"),
                              QStringLiteral("B"), QStringLiteral("trip 9"), QStringLiteral("Trip 10")}));
    }
};

QTEST_GUILESS_MAIN(NewestFirstTest)
#include "NewestFirstTest.moc"
