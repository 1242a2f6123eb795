#include "NewestFirst.h"

#include <QTest>

#include <random>

using namespace Qt::StringLiterals;

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
        QCOMPARE(paths(files), QStringList({u"/z newest"_s, u"/B.jpg"_s, u"/c.jpg"_s, u"/clip 2.mp4"_s,
                                            u"/clip 10.mp4"_s, u"/x/same.jpg"_s, u"/a/SAME.jpg"_s,
                                            u"/m/same.jpg"_s, u"/old"_s, u"/0 undated"_s}));
    }

    void nanosecondsCount() {
        QList<MediaFile> files{file("/a", 1), file("/b", 1)};
        files[1].addedAt += std::chrono::nanoseconds(1);
        sortNewestFirst(files);
        QCOMPARE(paths(files), QStringList({u"/b"_s, u"/a"_s}));
    }

    void sharedListsStay() {
        const QList<MediaFile> original{file("/a", 1), file("/c", 2), file("/b", 2)};
        QList<MediaFile> copy = original;
        sortNewestFirst(copy);
        QCOMPARE(paths(original), QStringList({u"/a"_s, u"/c"_s, u"/b"_s}));
        QCOMPARE(paths(copy), QStringList({u"/b"_s, u"/c"_s, u"/a"_s}));
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
        QCOMPARE(names, QStringList({u"a"_s, u"Äh"_s, u"b"_s, u"B"_s, u"trip 9"_s, u"Trip 10"_s}));
    }
};

QTEST_GUILESS_MAIN(NewestFirstTest)
#include "NewestFirstTest.moc"
