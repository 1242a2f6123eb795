#include "FolderScanner.h"

#include "MediaMaker.h"
#include "TemporaryFolder.h"

#include <QTest>

#include <array>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

/// Enough for any scan of these tests on a busy machine.
constexpr int patience = 60'000;

/// In alphabetical order.
QString names(const QList<MediaFile> &files) {
    QStringList list;
    for (const MediaFile &file : files) {
        list << file.url.lastPathComponent();
    }
    list.sort();
    return list.join(u' ');
}

QString names(const QList<FolderCard> &cards) {
    QStringList list;
    for (const FolderCard &card : cards) {
        list << card.name + u':' + QString::number(card.itemCount);
    }
    return list.join(u' ');
}

} // namespace

class FolderScannerTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TemporaryFolder> m_temporary;

    const FileURL &root() const { return m_temporary->url(); }
    FileURL at(const QByteArray &path) const { return m_temporary->at(path); }

    /// A file that is media by name and size, with its folders. Its content is noise unless given.
    void add(const QByteArray &path, qint64 size = MediaMaker::mediaSize) const {
        const FileURL url = at(path);
        const qsizetype slash = path.lastIndexOf('/');
        QVERIFY(slash < 0 || m_temporary->makeFolder(path.left(slash)));
        QVERIFY(MediaMaker::write(url, MediaMaker::noise(size)));
    }

    static QFuture<ScanResult> finished(const FileURL &folder) {
        QFuture<ScanResult> future = FolderScanner::scan(folder);
        // Only a test may wait like this.
        const bool done = QTest::qWaitFor([&] { return future.isFinished(); }, patience);
        return done ? future : QFuture<ScanResult>();
    }
    ScanResult scanned() const {
        const QFuture<ScanResult> future = finished(root());
        return future.resultCount() == 1 ? future.result() : ScanResult();
    }

private Q_SLOTS:
    void init() {
        m_temporary = std::make_unique<TemporaryFolder>();
        QVERIFY(m_temporary->isValid());
    }
    void cleanup() { m_temporary.reset(); }

    void recognisesFiles() {
        QList<QByteArray> videos{"just enough.mp4", "broken \xFF\xC0.mkv"};
        QList<QByteArray> photos{"two.tar.jpg", "line\nbreak.jpg", "latin \xE9t\xE9.jpg",
                                 "Bild \xC3\xA4 \xF0\x9F\x8C\x85.jpg", QByteArray(251, 'n') + ".jpg"};
        for (const QByteArray &extension : MediaMaker::videoExtensions()) {
            videos << "a." + extension << "B." + extension.toUpper();
        }
        for (const QByteArray &extension : MediaMaker::photoExtensions()) {
            photos << "a." + extension << "B." + extension.toUpper();
        }
        for (const QByteArray &name : videos + photos) {
            add(name, 50'000);
        }
        for (const char *name :
             {"text.txt", "mp4", "dot at end.", "two.mp4.part", ".jpg", ".hidden.jpg", "photo.jp\xE9g"}) {
            add(name);
        }
        add("too small.mp4", 49'999);
        add("too small.jpg", 49'999);
        add("empty.jpg", 0);
        const ScanResult result = scanned();
        QCOMPARE(result.folder, root());
        const auto check = [this](const QList<MediaFile> &files, QList<QByteArray> expected, MediaKind kind,
                                  double ratio) {
            QList<QByteArray> found;
            for (const MediaFile &file : files) {
                found << file.url.nativeName();
                QVERIFY(file.url.deletingLastPathComponent() == root() && file.kind == kind);
                // Noise has no size of its own.
                QCOMPARE(file.aspectRatio, ratio);
            }
            std::sort(found.begin(), found.end());
            std::sort(expected.begin(), expected.end());
            QCOMPARE(found, expected);
        };
        check(result.videos, videos, MediaKind::video, 16.0 / 9.0);
        check(result.photos, photos, MediaKind::photo, 0.75);
    }

    void foldsAndCards() {
        for (const char *path :
             {"own.jpg", "Clips/1.mp4", "Clips/deeper/2.mp4", "Prints/sub/sub/3.png", "Mixed 10/4.mp4",
              "Mixed 10/below/5.jpg", "Mixed 10/below/6.jpg", "mixed 9/7.mkv", "mixed 9/8.png",
              "Both inside/inner/9.mkv", "Both inside/inner/10.png", "Text/readme.txt"}) {
            add(path);
        }
        QVERIFY(m_temporary->makeFolder("Empty/emptier"));
        const ScanResult result = scanned();
        QCOMPARE(names(result.videos), "1.mp4 2.mp4"_L1);
        QCOMPARE(names(result.photos), "3.png own.jpg"_L1);
        QCOMPARE(names(result.folders), "Both inside:2 mixed 9:2 Mixed 10:3"_L1);
        QCOMPARE(result.folders[2].url, at("Mixed 10"));
    }

    void prunesIgnoredNames() {
        // Only folders are ignored by name.
        for (const char *path : {"Thumbnails/1.jpg", "ARCHIVE/2.mp4", "keep/thumbnail/3.jpg",
                                 "keep/Archive/deep/4.jpg", "keep/archives/5.jpg", "keep/.cache/6.jpg",
                                 ".dotted/7.jpg", "keep/App.app/8.jpg", "keep/thumbnails.jpg"}) {
            add(path);
        }
        const ScanResult result = scanned();
        QCOMPARE(names(result.photos), "5.jpg 8.jpg thumbnails.jpg"_L1);
        QVERIFY(result.videos.isEmpty() && result.folders.isEmpty());
    }

    void ordersNewestFirst() {
        // Files made one after the other are as old as their making, where the file system keeps it; the
        // modification time must then not matter.
        for (const char *name : {"b.jpg", "a.jpg", "c/d.mp4", "c/e.jpg"}) {
            add(name);
            QTest::qSleep(20);
        }
        const std::array<timespec, 2> longAgo{timespec{.tv_sec = 1000, .tv_nsec = 0},
                                              timespec{.tv_sec = 1000, .tv_nsec = 0}};
        QCOMPARE(utimensat(AT_FDCWD, at("a.jpg").nativePath().constData(), longAgo.data(), 0), 0);
        struct statx status {};
        QCOMPARE(statx(AT_FDCWD, at("a.jpg").nativePath().constData(), 0, STATX_BTIME, &status), 0);
        const bool born = (status.stx_mask & STATX_BTIME) != 0;
        const ScanResult result = scanned();
        QCOMPARE(result.photos.size(), 2);
        QCOMPARE(result.photos.first().url.lastPathComponent(), born ? u"a.jpg"_s : u"b.jpg"_s);
        QVERIFY(result.photos[0].addedAt > result.photos[1].addedAt);
        QCOMPARE(result.folders.size(), 1);
        const auto &representative = result.folders.first().representative;
        QVERIFY(representative.has_value());
        QCOMPARE(representative->url.lastPathComponent(), u"e.jpg"_s);
    }

    void measures_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("turn");
        QTest::addColumn<double>("ratio");
        QTest::newRow("panorama") << "p.png"_ba << QSize(4000, 1000) << 1 << 3.5;
        QTest::newRow("strip") << "p.png"_ba << QSize(100, 1000) << 1 << 0.35;
        QTest::newRow("photo") << "p.jpg"_ba << QSize(640, 480) << 1 << 4.0 / 3;
        QTest::newRow("tag not applied") << "p.jpg"_ba << QSize(480, 640) << 6 << 4.0 / 3;
        QTest::newRow("turned container") << "p.heic"_ba << QSize(480, 640) << 6 << 0.75;
        QTest::newRow("video") << "v.mp4"_ba << QSize(320, 240) << 0 << 4.0 / 3;
        QTest::newRow("turned video") << "v.mp4"_ba << QSize(160, 240) << 90 << 2.0 / 3;
    }

    void measures() {
        QFETCH(QByteArray, name);
        QFETCH(QSize, size);
        QFETCH(int, turn);
        QFETCH(double, ratio);
        const bool video = name.startsWith('v');
        QVERIFY(video ? MediaMaker::video(at(name), {.size = size, .rotation = turn})
                      : MediaMaker::photo(at(name), {.size = size, .orientation = turn}));
        const ScanResult result = scanned();
        const QList<MediaFile> files = video ? result.videos : result.photos;
        QCOMPARE(files.size(), 1);
        QCOMPARE(files.first().aspectRatio, ratio);
    }

    void passesOverWhatIsNoFile() {
        add("real.jpg");
        add("elsewhere/target.mp4");
        const QByteArray folder = root().nativePath();
        QCOMPARE(mkfifo((folder + "/pipe.jpg").constData(), 0600), 0);
        QCOMPARE(symlink("real.jpg", (folder + "/link.jpg").constData()), 0);
        QCOMPARE(symlink("gone.jpg", (folder + "/dangling.jpg").constData()), 0);
        QCOMPARE(symlink("elsewhere", (folder + "/linked folder").constData()), 0);
        QCOMPARE(symlink(".", (folder + "/loop").constData()), 0);
        QCOMPARE(symlink("..", (folder + "/elsewhere/up").constData()), 0);
        QCOMPARE(mkfifo((folder + "/elsewhere/pipe.mp4").constData(), 0600), 0);
        QCOMPARE(mknod((folder + "/socket.mp4").constData(), S_IFSOCK | 0600, 0), 0);
        QVERIFY(m_temporary->makeFolder("folder.jpg"));
        const ScanResult result = scanned();
        QCOMPARE(names(result.photos), "real.jpg"_L1);
        QCOMPARE(names(result.videos), "target.mp4"_L1);
        QVERIFY(result.folders.isEmpty());
    }

    void followsLinkThatUserOpened() {
        add("real/photo.jpg");
        QCOMPARE(symlink("real", at("opened").nativePath().constData()), 0);
        const QFuture<ScanResult> future = finished(at("opened"));
        QCOMPARE(future.resultCount(), 1);
        QCOMPARE(future.result().photos.size(), 1);
        QCOMPARE(future.result().photos.first().url, at("opened/photo.jpg"));
    }

    void passesOverUnreadableSubfolders() {
        if (geteuid() == 0) {
            QSKIP("root reads every folder");
        }
        add("locked/1.jpg");
        add("half/locked/2.jpg");
        add("half/3.jpg");
        QCOMPARE(chmod(at("locked").nativePath().constData(), 0), 0);
        QCOMPARE(chmod(at("half/locked").nativePath().constData(), 0), 0);
        const ScanResult result = scanned();
        const QFuture<ScanResult> top = finished(at("locked"));
        chmod(at("locked").nativePath().constData(), 0700);
        chmod(at("half/locked").nativePath().constData(), 0700);
        QCOMPARE(names(result.photos), "3.jpg"_L1);
        QCOMPARE(top.resultCount(), 0);
    }

    void cancellation() {
        for (int i = 0; i < 2000; ++i) {
            QVERIFY(MediaMaker::write(at(QByteArray::number(i) + ".txt"), "x"));
        }
        QFuture<ScanResult> future = FolderScanner::scan(root());
        future.cancel();
        QVERIFY(QTest::qWaitFor([&] { return future.isFinished(); }, patience));
        QVERIFY(future.isCanceled());
        QCOMPARE(future.resultCount(), 0);
    }
};

QTEST_GUILESS_MAIN(FolderScannerTest)
#include "FolderScannerTest.moc"
