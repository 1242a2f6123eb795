#include "DirectoryWalk.h"

#include "FileSystemError.h"
#include "MediaMaker.h"
#include "TemporaryFolder.h"

#include <QDir>
#include <QSet>
#include <QTest>

#include <cerrno>
#include <memory>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

int openDescriptors() {
    return int(QDir(u"/proc/self/fd"_s).count());
}

} // namespace

class DirectoryWalkTest : public QObject {
    Q_OBJECT

    std::unique_ptr<TemporaryFolder> m_temporary;

    FileURL at(const QByteArray &path) const { return m_temporary->at(path); }
    bool write(const QByteArray &path, const QByteArray &content = "content") const {
        return MediaMaker::write(at(path), content);
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

    /// Several of the kernel's buffers full.
    void listsManyNames() {
        constexpr int many = 600;
        for (int i = 0; i < many; ++i) {
            QVERIFY(write(QByteArray(200, 'n') + QByteArray::number(i), ""));
        }
        QSet<FileURL> found;
        DirectoryWalk walk(m_temporary->url(), DirectoryWalk::Depth::entries);
        while (const auto entry = walk.next()) {
            found << entry->url;
        }
        QCOMPARE(found.size(), many);
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
};

QTEST_GUILESS_MAIN(DirectoryWalkTest)
#include "DirectoryWalkTest.moc"
