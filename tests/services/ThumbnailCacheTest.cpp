#include "ThumbnailDiskCache.h"
#include "ThumbnailMemoryCache.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

QImage picture(const QSize &size = {72, 48}) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(QColor(200, 100, 50));
    return image;
}

mode_t rights(const QString &path) {
    struct stat status {};
    return ::stat(path.toUtf8().constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

} // namespace

class ThumbnailCacheTest : public QObject {
    Q_OBJECT

    FileURL directory() const { return FileURL::fromPath(m_folder->filePath(u"a/b/c"_s)); }
    QString inside(const QByteArray &name) const {
        return directory().path() + u'/' + QString::fromUtf8(name);
    }
    QStringList entries() const { return QDir(directory().path()).entryList(QDir::Files, QDir::Name); }

    std::unique_ptr<QTemporaryDir> m_folder;
    const FileURL m_media = FileURL::fromNativePath("/some/photo.jpg");

    bool addFile(const QByteArray &name, qint64 size, time_t modified) const {
        QFile file(inside(name));
        const timespec times[2] = {{modified, 0}, {modified, 0}};
        return file.open(QIODevice::WriteOnly) && file.resize(size) && ::futimens(file.handle(), times) == 0;
    }

private Q_SLOTS:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
    }

    void memoryForgetsTheLeastRecentlyUsed() {
        ThumbnailMemoryCache cache(3, 1'000'000);
        for (const char *path : {"a", "b", "c"}) {
            cache.insert(path, picture());
        }
        QVERIFY(!cache.image("a").isNull());
        cache.insert("d", picture());
        QCOMPARE(cache.count(), 3);
        QVERIFY(cache.contains("a"));
        QVERIFY(!cache.contains("b"));
        QVERIFY(cache.image("b").isNull());
        cache.insert("a", picture({10, 10}));
        QCOMPARE(cache.count(), 3);
        QCOMPARE(cache.image("a").size(), QSize(10, 10));
    }

    void memoryIsBoundedByBytes() {
        const qint64 one = picture().sizeInBytes();
        ThumbnailMemoryCache cache(300, 2 * one);
        for (const char *path : {"a", "b", "c"}) {
            cache.insert(path, picture());
        }
        QCOMPARE(cache.count(), 2);
        QCOMPARE(cache.bytes(), 2 * one);
        cache.insert("large", picture({300, 300}));
        QCOMPARE(cache.count(), 0);
        QCOMPARE(cache.bytes(), 0);
    }

    void keepsPictures() {
        const ThumbnailDiskCache cache(directory());
        cache.prepare();
        QVERIFY(cache.read(m_media).isNull());
        cache.write(m_media, picture());
        // Another program's view of the same directory.
        const QImage kept = ThumbnailDiskCache(directory()).read(m_media);
        QCOMPARE(kept.size(), QSize(72, 48));
        QVERIFY(std::abs(kept.pixelColor(30, 30).red() - 200) < 6);
        QCOMPARE(entries(), QStringList(QString::fromLatin1(ThumbnailDiskCache::cacheName(m_media))));
        // The user may empty the caches at any time.
        QVERIFY(QDir(m_folder->filePath(u"a"_s)).removeRecursively());
        QVERIFY(cache.read(m_media).isNull());
        cache.write(m_media, picture({20, 20}));
        QCOMPARE(cache.read(m_media).size(), QSize(20, 20));
        QCOMPARE(QDir(directory().path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    }

    void rightsWhateverTheUmask() {
        const mode_t before = ::umask(0777);
        const ThumbnailDiskCache cache(directory());
        cache.prepare();
        cache.write(m_media, picture());
        ::umask(before);
        QCOMPARE(rights(directory().path()), mode_t(0700));
        QCOMPARE(rights(inside(ThumbnailDiskCache::cacheName(m_media))), mode_t(0600));
    }

    void refusesALinkInItsPlace() {
        QVERIFY(QDir(m_folder->path()).mkpath(u"a/b"_s));
        QVERIFY(QDir(m_folder->path()).mkpath(u"elsewhere"_s));
        const QString target = m_folder->filePath(u"elsewhere"_s);
        QVERIFY(QFile::link(target, directory().path()));
        const mode_t before = rights(target);
        const ThumbnailDiskCache cache(directory());
        cache.prepare(0);
        cache.write(m_media, picture());
        QVERIFY(QDir(target).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
        QCOMPARE(rights(target), before);
        QVERIFY(cache.read(m_media).isNull());
    }

    void damagedEntriesAreAbsent_data() {
        QTest::addColumn<int>("keptPercent");
        QTest::addColumn<QByteArray>("appended");
        QTest::newRow("empty") << 0 << QByteArray();
        QTest::newRow("nearly whole") << 99 << QByteArray();
        QTest::newRow("zeros at the end") << 60 << QByteArray(2000, '\0');
        QTest::newRow("no picture, right end") << 0 << "xxxx\xFF\xD9"_ba;
    }

    void damagedEntriesAreAbsent() {
        QFETCH(int, keptPercent);
        QFETCH(QByteArray, appended);
        const ThumbnailDiskCache cache(directory());
        cache.prepare();
        cache.write(m_media, picture());
        QFile file(inside(ThumbnailDiskCache::cacheName(m_media)));
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.resize(file.size() * keptPercent / 100));
        QVERIFY(file.seek(file.size()));
        QCOMPARE(file.write(appended), appended.size());
        file.close();
        QVERIFY(cache.read(m_media).isNull());
        cache.write(m_media, picture());
        QVERIFY(!cache.read(m_media).isNull());
    }

    void trims_data() {
        QTest::addColumn<qint64>("limit");
        QTest::addColumn<QStringList>("left");
        const QStringList all{u"a"_s, u"b"_s, u"c"_s, u"d"_s};
        // 100, 200, 300 and 400 bytes; oldest first: c, a, d, b.
        QTest::newRow("one byte over") << qint64(999) << QStringList{u"a"_s, u"b"_s, u"d"_s};
        QTest::newRow("only the newest") << qint64(599) << QStringList{u"b"_s};
        QTest::newRow("nothing") << qint64(0) << QStringList();
    }

    void trims() {
        QFETCH(qint64, limit);
        QFETCH(QStringList, left);
        const ThumbnailDiskCache cache(directory());
        cache.prepare();
        QVERIFY(addFile("a", 100, 2000) && addFile("b", 200, 4000) && addFile("c", 300, 1000) &&
                addFile("d", 400, 3000));
        cache.prepare(limit);
        QCOMPARE(entries(), left);
    }

    void trimsOnlyRegularVisibleFiles() {
        const ThumbnailDiskCache cache(directory());
        cache.prepare();
        QVERIFY(addFile(".hidden", 5000, 1000) && addFile("seen", 100, 1000));
        QVERIFY(addFile(".writing-1-0-abandoned.jpg", 100, 1000));
        QVERIFY(addFile(".writing-1-1-growing.jpg", 100, ::time(nullptr)));
        QVERIFY(QDir(directory().path()).mkdir(u"folder"_s));
        QVERIFY(QFile::link(inside("seen"), inside("link")));
        cache.prepare(100);
        QVERIFY(QFile::exists(inside("seen")));
        cache.prepare(99);
        QVERIFY(!QFile::exists(inside("seen")));
        QVERIFY(QFile::exists(inside(".hidden")));
        QVERIFY(!QFile::exists(inside(".writing-1-0-abandoned.jpg")));
        QVERIFY(QFile::exists(inside(".writing-1-1-growing.jpg")));
        QVERIFY(QDir(inside("folder")).exists());
        QVERIFY(!QFile::symLinkTarget(inside("link")).isEmpty());
    }
};

QTEST_GUILESS_MAIN(ThumbnailCacheTest)
#include "ThumbnailCacheTest.moc"
