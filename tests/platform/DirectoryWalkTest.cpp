#include "DirectoryWalk.h"

#include "FileSystemError.h"
#include "MediaMaker.h"
#include "TemporaryFolder.h"

#include <QSet>
#include <QTest>

#include <array>
#include <cerrno>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

using Type = DirectoryEntry::Type;

int openDescriptors() {
    int count = 0;
    if (DIR *folder = opendir("/proc/self/fd")) {
        while (readdir(folder) != nullptr) {
            ++count;
        }
        closedir(folder);
    }
    return count;
}

} // namespace

class DirectoryWalkTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TemporaryFolder> m_temporary;

    FileURL at(const QByteArray &path) const { return m_temporary->at(path); }
    bool write(const QByteArray &path, const QByteArray &content = "content") const {
        return MediaMaker::write(at(path), content);
    }
    QSet<QByteArray> walked(DirectoryWalk::Depth depth, const QByteArray &without = {}) const {
        QSet<QByteArray> paths;
        const qsizetype prefix = m_temporary->url().nativePath().size() + 1;
        DirectoryWalk walk(m_temporary->url(), depth);
        while (const auto entry = walk.next()) {
            paths << entry->url.nativePath().mid(prefix);
            if (entry->url.nativeName() == without) {
                walk.skipDescendants();
            }
        }
        return paths;
    }
    /// A chain of folders with one file in each; returns how many entries there are.
    int makeChain(int depth, const QByteArray &name) const {
        int fd = open(m_temporary->url().nativePath().constData(), O_PATH | O_CLOEXEC);
        for (int i = 0; i < depth; ++i) {
            mkdirat(fd, name.constData(), 0700);
            const int next = openat(fd, name.constData(), O_PATH | O_CLOEXEC);
            close(fd);
            fd = next;
            for (const char *file : {"a", "z"}) {
                close(openat(fd, file, O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
            }
        }
        close(fd);
        return 3 * depth;
    }

private Q_SLOTS:
    void init() {
        m_temporary = std::make_unique<TemporaryFolder>();
        QVERIFY(m_temporary->isValid());
    }
    void cleanup() { m_temporary.reset(); }

    void listsAndDescends() {
        // Several of the kernel's buffers full of names.
        constexpr int many = 600;
        QVERIFY(m_temporary->makeFolder("skipped/many"));
        for (int i = 0; i < many; ++i) {
            QVERIFY(write("skipped/many/" + QByteArray(200, 'n') + QByteArray::number(i), ""));
        }
        QCOMPARE(walked(DirectoryWalk::Depth::subtree).size(), many + 2);
        QVERIFY(m_temporary->makeFolder("one/two/three") && m_temporary->makeFolder("skipped/below") &&
                m_temporary->makeFolder(".hidden") && m_temporary->makeFolder("empty"));
        QVERIFY(write("file") && write("one/two/three/deep") && write("one/.dot") &&
                write("skipped/below/x") && write(".hidden/y"));
        const QSet<QByteArray> top{"one", "skipped", "empty", "file"};
        QCOMPARE(walked(DirectoryWalk::Depth::entries), top);
        const QSet<QByteArray> all{"one",  "one/two", "one/two/three", "one/two/three/deep",
                                   "file", "empty",   "skipped"};
        QCOMPARE(walked(DirectoryWalk::Depth::subtree, "skipped"), all);
    }

    void attributes() {
        QVERIFY(write("file", QByteArray(12345, 'x')));
        QVERIFY(m_temporary->makeFolder("folder"));
        QCOMPARE(symlink("folder", at("link").nativePath().constData()), 0);
        QCOMPARE(mkfifo(at("pipe").nativePath().constData(), 0600), 0);
        const std::array<timespec, 2> times{timespec{.tv_sec = 1, .tv_nsec = 0},
                                            timespec{.tv_sec = 1234567890, .tv_nsec = 987654321}};
        QCOMPARE(utimensat(AT_FDCWD, at("file").nativePath().constData(), times.data(), 0), 0);
        QHash<QByteArray, DirectoryEntry> entries;
        DirectoryWalk walk(m_temporary->url(), DirectoryWalk::Depth::subtree);
        while (const auto entry = walk.next()) {
            entries.insert(entry->url.nativeName(), *entry);
        }
        QCOMPARE(entries.size(), 4);
        QCOMPARE(entries["file"].type, Type::regularFile);
        QCOMPARE(entries["file"].size, 12345);
        QVERIFY(entries["file"].modified.has_value());
        QCOMPARE(qint64(entries["file"].modified->time_since_epoch().count()), 1'234'567'890'987'654'321);
        QCOMPARE(entries["folder"].type, Type::directory);
        QCOMPARE(entries["link"].type, Type::other);
        QCOMPARE(entries["pipe"].type, Type::other);
    }

    void deepFolders_data() {
        QTest::addColumn<int>("depth");
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("many") << 300 << "d"_ba;
        QTest::newRow("long path") << 60 << QByteArray(250, 'l');
    }

    void deepFolders() {
        QFETCH(int, depth);
        QFETCH(QByteArray, name);
        const int expected = makeChain(depth, name);
        int count = 0;
        int most = 0;
        qsizetype longest = 0;
        const int before = openDescriptors();
        {
            DirectoryWalk walk(m_temporary->url(), DirectoryWalk::Depth::subtree);
            while (const auto entry = walk.next()) {
                ++count;
                longest = std::max(longest, entry->url.nativePath().size());
                if (count % 50 == 0) {
                    most = std::max(most, openDescriptors() - before);
                }
            }
        }
        QCOMPARE(count, expected);
        QVERIFY2(most <= 40, qPrintable(QString::number(most)));
        QVERIFY(longest > depth * (name.size() + 1));
        QCOMPARE(openDescriptors(), before);
    }

    void vanishedEntryIsAnError() {
        for (const char *name : {"a", "b", "c"}) {
            QVERIFY(write(name));
        }
        DirectoryWalk walk(m_temporary->url(), DirectoryWalk::Depth::subtree);
        const auto first = walk.next();
        QVERIFY(first.has_value());
        for (const char *name : {"a", "b", "c"}) {
            unlink(at(name).nativePath().constData());
        }
        try {
            walk.next();
            QFAIL("no error");
        } catch (const FileSystemError &error) {
            QCOMPARE(error.code(), ENOENT);
            QVERIFY(error.message().contains(error.url().lastPathComponent()));
        }
    }

    void folderMovedAwayOnTheWay() {
        makeChain(80, "d");
        QVERIFY(m_temporary->makeFolder("elsewhere"));
        DirectoryWalk walk(at("d"), DirectoryWalk::Depth::subtree);
        bool moved = false;
        bool failed = false;
        try {
            while (const auto entry = walk.next()) {
                if (entry->url.nativePath().count("/d") >= 60 && !std::exchange(moved, true)) {
                    // From above the open folders to a place with another parent.
                    QCOMPARE(rename(at("d/d").nativePath().constData(),
                                    at("elsewhere/d").nativePath().constData()),
                             0);
                }
            }
        } catch (const FileSystemError &error) {
            failed = true;
            QCOMPARE(error.code(), ESTALE);
        }
        QVERIFY(failed);
    }

    void folderReplacedByLinkIsNotEntered() {
        QVERIFY(m_temporary->makeFolder("walked/sub") && m_temporary->makeFolder("secret"));
        QVERIFY(write("secret/file") && write("walked/sub/own"));
        DirectoryWalk walk(at("walked"), DirectoryWalk::Depth::subtree);
        QCOMPARE(walk.next()->url, at("walked/sub"));
        QCOMPARE(rename(at("walked/sub").nativePath().constData(), at("moved").nativePath().constData()), 0);
        QCOMPARE(symlink("../secret", at("walked/sub").nativePath().constData()), 0);
        QVERIFY(!walk.next().has_value());
    }

    void unlistableTop_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<int>("code");
        QTest::newRow("missing") << "missing"_ba << ENOENT;
        QTest::newRow("file") << "file"_ba << ENOTDIR;
        QTest::newRow("pipe") << "pipe"_ba << ENOTDIR;
    }

    void unlistableTop() {
        QFETCH(QByteArray, name);
        QFETCH(int, code);
        QVERIFY(write("file"));
        QCOMPARE(mkfifo(at("pipe").nativePath().constData(), 0600), 0);
        for (const auto depth : {DirectoryWalk::Depth::entries, DirectoryWalk::Depth::subtree}) {
            try {
                const DirectoryWalk walk(at(name), depth);
                QFAIL("no error");
            } catch (const FileSystemError &error) {
                QCOMPARE(error.code(), code);
                QCOMPARE(error.url(), at(name));
            }
        }
    }
};

QTEST_GUILESS_MAIN(DirectoryWalkTest)
#include "DirectoryWalkTest.moc"
