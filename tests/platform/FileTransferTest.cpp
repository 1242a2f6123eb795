#include "FileTransfer.h"
#include "FileFixture.h"
#include "PrivateMounts.h"

#include <QtTest>

#include <atomic>
#include <optional>
#include <thread>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace FileFixture;

namespace {

constexpr FileOperationKind kinds[] = {FileOperationKind::copy, FileOperationKind::move};

const char *kindName(FileOperationKind kind) {
    return kind == FileOperationKind::copy ? "copy" : "move";
}

/// An access list that lets one more user read: version 2, then tag, permissions and number of each entry.
QByteArray accessList() {
    const quint32 nobody = 0xffffffff;
    struct [[gnu::packed]] Entry {
        quint16 tag, permissions;
        quint32 number;
    } const entries[] = {
        {0x01, 6, nobody}, {0x02, 4, ::geteuid()}, {0x04, 0, nobody}, {0x10, 4, nobody}, {0x20, 0, nobody}};
    const quint32 version = 2;
    return QByteArray(reinterpret_cast<const char *>(&version), sizeof version) +
           QByteArray(reinterpret_cast<const char *>(entries), sizeof entries);
}

QByteArray attribute(const QByteArray &path, const char *name) {
    QByteArray value(1024, '\0');
    const ssize_t size = ::getxattr(path.constData(), name, value.data(), size_t(value.size()));
    return size < 0 ? QByteArray() : value.left(size);
}

} // namespace

class FileTransferTest : public QObject {
    Q_OBJECT

    std::optional<TemporaryFolder> m_root;
    std::optional<MemoryMount> m_mount;
    QByteArray m_from;
    QByteArray m_to;

    QList<FileTransfer::Outcome> run(FileOperationKind kind, const QByteArrayList &sources,
                                     const StopRequest &hook = {}) {
        QList<FileTransfer::Outcome> outcomes;
        FileTransfer transfer(
            FileURL::directory(m_to), kind,
            [&](const FileTransfer::Outcome &outcome) { outcomes.append(outcome); }, hook);
        for (const QByteArray &source : sources) {
            transfer.add(FileURL::fromNativePath(source));
        }
        transfer.flush();
        return outcomes;
    }

    /// Puts the folder "to" on a file system of its own.
    bool separate(const QByteArray &options = "size=64m") {
        m_mount.emplace(m_root->path() + "/mount", options);
        m_to = m_mount->path() + "/to";
        return m_mount->isMounted() && makeDirectory(m_to);
    }

    static void addKinds() {
        QTest::addColumn<FileOperationKind>("kind");
        QTest::addColumn<bool>("across");
        for (const FileOperationKind kind : kinds) {
            QTest::addRow("%s, one file system", kindName(kind)) << kind << false;
            QTest::addRow("%s, two file systems", kindName(kind)) << kind << true;
        }
    }

private Q_SLOTS:
    void init() {
        m_root.emplace();
        m_from = m_root->path() + "/from";
        m_to = m_root->path() + "/to";
        QVERIFY(makeDirectory(m_from) && makeDirectory(m_to));
    }

    void cleanup() {
        m_mount.reset();
        m_root.reset();
    }

    void keepsEverything_data() { addKinds(); }

    void keepsEverything() {
        QFETCH(FileOperationKind, kind);
        QFETCH(bool, across);
        if (across && !PrivateMounts::unavailable().isEmpty()) {
            QSKIP(qPrintable(PrivateMounts::unavailable()));
        }
        QVERIFY(!across || separate());
        // Data, a hole, data, a hole at the end.
        const QByteArray source = m_from + "/clip \xff.mp4";
        QByteArray content = pattern(700'001, 1) + QByteArray(4 << 20, '\0') + pattern(9'000, 2);
        content.resize(8 << 20, '\0');
        const int fd = ::open(source.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
        QVERIFY(::pwrite(fd, content.constData(), 700'001, 0) == 700'001);
        QVERIFY(::pwrite(fd, content.constData() + 700'001 + (4 << 20), 9'000, 700'001 + (4 << 20)) == 9'000);
        QVERIFY(::ftruncate(fd, 8 << 20) == 0);
        const QByteArray list = accessList();
        const bool holdsAttributes = ::fsetxattr(fd, "user.comment", "sea\0side", 8, 0) == 0 &&
                                     ::setxattr(m_to.constData(), "user.test", "", 0, 0) == 0;
        const bool holdsLists =
            ::fsetxattr(fd, "system.posix_acl_access", list.constData(), size_t(list.size()), 0) == 0 &&
            ::setxattr(m_to.constData(), "system.posix_acl_access", list.constData(), size_t(list.size()),
                       0) == 0;
        const timespec times[] = {{1'000'000'001, 123'456'789}, {999'999'999, 987'654'321}};
        QVERIFY(::futimens(fd, times) == 0);
        ::close(fd);
        struct stat before {};
        QVERIFY(::stat(source.constData(), &before) == 0);

        const auto outcomes = run(kind, {source});

        QCOMPARE(outcomes.size(), 1);
        QVERIFY2(!outcomes[0].error, outcomes[0].error.message().c_str());
        const QByteArray target = outcomes[0].destination.nativePath();
        QCOMPARE(target, m_to + "/clip \xff.mp4");
        struct stat after {};
        QVERIFY(::stat(target.constData(), &after) == 0);
        QCOMPARE(after.st_mode, before.st_mode);
        QCOMPARE(after.st_uid, before.st_uid);
        QCOMPARE(after.st_mtim.tv_sec, before.st_mtim.tv_sec);
        QCOMPARE(after.st_mtim.tv_nsec, before.st_mtim.tv_nsec);
        QCOMPARE(after.st_atim.tv_sec, before.st_atim.tv_sec);
        QCOMPARE(after.st_atim.tv_nsec, before.st_atim.tv_nsec);
        if (holdsAttributes) {
            QCOMPARE(attribute(target, "user.comment"), QByteArray("sea\0side", 8));
        }
        if (holdsLists) {
            QCOMPARE(attribute(target, "system.posix_acl_access"), list);
        }
        QVERIFY2(qint64(after.st_blocks) * 512 < (4 << 20), "holes were filled");
        QVERIFY(read(target) == content);
        QCOMPARE(exists(source), kind == FileOperationKind::copy);
        QCOMPARE(names(m_to).size(), 1);
    }

    /// A folder may give its new files an access list; a copy has its original's rights all the same.
    void takesNoRightsFromTheFolder() {
        const QByteArray list = accessList();
        if (::setxattr(m_to.constData(), "system.posix_acl_default", list.constData(), size_t(list.size()),
                       0) != 0) {
            QSKIP("no access lists on the file system of temporary files");
        }
        QVERIFY(write(m_from + "/a.jpg", "a"));
        QVERIFY(::chmod(QByteArray(m_from + "/a.jpg").constData(), 0640) == 0);
        QVERIFY(!run(FileOperationKind::copy, {m_from + "/a.jpg"})[0].error);
        QCOMPARE(attribute(m_to + "/a.jpg", "system.posix_acl_access"), QByteArray());
        struct stat status {};
        QVERIFY(::stat(QByteArray(m_to + "/a.jpg").constData(), &status) == 0);
        QCOMPARE(status.st_mode & 07777, mode_t(0640));
    }

    void takesTheNextFreeName_data() {
        QTest::addColumn<FileOperationKind>("kind");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArrayList>("taken");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray longest = QByteArray(251, 'n') + ".mp4";
        for (const FileOperationKind kind : kinds) {
            const char *text = kindName(kind);
            QTest::addRow("%s, free", text)
                << kind << QByteArray("a.mp4") << QByteArrayList{} << QByteArray("a.mp4");
            QTest::addRow("%s, files", text)
                << kind << QByteArray("a.mp4") << QByteArrayList{"a.mp4", "a 2.mp4"} << QByteArray("a 3.mp4");
            QTest::addRow("%s, a gap", text)
                << kind << QByteArray("a.mp4") << QByteArrayList{"a.mp4", "a 3.mp4"} << QByteArray("a 2.mp4");
            QTest::addRow("%s, a folder and a dead link", text)
                << kind << QByteArray("a") << QByteArrayList{"a/", "a 2@"} << QByteArray("a 3");
            QTest::addRow("%s, no room for a number", text)
                << kind << longest << QByteArrayList{longest} << QByteArray(249, 'n') + " 2.mp4";
        }
    }

    void takesTheNextFreeName() {
        QFETCH(FileOperationKind, kind);
        QFETCH(QByteArray, name);
        QFETCH(QByteArrayList, taken);
        QFETCH(QByteArray, expected);
        for (QByteArray &other : taken) {
            const QByteArray path =
                m_to + '/' +
                other.left(other.endsWith('/') || other.endsWith('@') ? other.size() - 1 : other.size());
            QVERIFY(other.endsWith('/')   ? makeDirectory(path)
                    : other.endsWith('@') ? ::symlink("nowhere", path.constData()) == 0
                                          : write(path, "other"));
        }
        QVERIFY(write(m_from + '/' + name, "mine"));

        const auto outcomes = run(kind, {m_from + '/' + name});

        QVERIFY(!outcomes[0].error);
        QCOMPARE(outcomes[0].destination.nativeName(), expected);
        QCOMPARE(read(m_to + '/' + expected), QByteArray("mine"));
        QCOMPARE(names(m_to).size(), taken.size() + 1);
        for (const QByteArray &other : taken) {
            QVERIFY(!other.endsWith("mp4") || read(m_to + '/' + other) == "other");
        }
    }

    void worksInOneFolder() {
        m_to = m_from;
        QVERIFY(write(m_from + "/a.mp4", "a"));
        QCOMPARE(run(FileOperationKind::copy, {m_from + "/a.mp4"})[0].destination.nativeName(),
                 QByteArray("a 2.mp4"));
        QCOMPARE(run(FileOperationKind::move, {m_from + "/a.mp4"})[0].destination.nativeName(),
                 QByteArray("a 3.mp4"));
        QCOMPARE(names(m_from), (QByteArrayList{"a 2.mp4", "a 3.mp4"}));
    }

    void refusesWhatIsNoFile_data() { addKinds(); }

    void refusesWhatIsNoFile() {
        QFETCH(FileOperationKind, kind);
        QFETCH(bool, across);
        if (across && !PrivateMounts::unavailable().isEmpty()) {
            QSKIP(qPrintable(PrivateMounts::unavailable()));
        }
        QVERIFY(!across || separate());
        QVERIFY(write(m_from + "/first", "1") && write(m_from + "/last", "2"));
        QVERIFY(makeDirectory(m_from + "/folder"));
        QVERIFY(::symlink("first", QByteArray(m_from + "/link").constData()) == 0);
        QVERIFY(::mkfifo(QByteArray(m_from + "/pipe").constData(), 0600) == 0);
        QByteArrayList sources;
        for (const char *name : {"first", "folder", "link", "pipe", "missing", "last/below", "last"}) {
            sources.append(m_from + '/' + name);
        }
        const auto outcomes = run(kind, sources);
        QCOMPARE(outcomes.size(), sources.size());
        for (qsizetype i = 0; i < sources.size(); ++i) {
            QCOMPARE(outcomes[i].source.nativePath(), sources[i]);
            QCOMPARE(bool(outcomes[i].error), i != 0 && i != sources.size() - 1);
        }
        QCOMPARE(names(m_to), (QByteArrayList{"first", "last"}));
        QVERIFY(names(m_from).size() >= 3);
    }

    void failsWithoutAFolder_data() {
        QTest::addColumn<QByteArray>("folder");
        QTest::newRow("missing") << QByteArray("/missing");
        QTest::newRow("file") << QByteArray("/from/a");
    }

    void failsWithoutAFolder() {
        QFETCH(QByteArray, folder);
        QVERIFY(write(m_from + "/a", "a"));
        m_to = m_root->path() + folder;
        for (const FileOperationKind kind : kinds) {
            QVERIFY(run(kind, {m_from + "/a"})[0].error);
            QCOMPARE(read(m_from + "/a"), QByteArray("a"));
        }
    }

    /// The hook runs while the content is being copied, which is when another program gets in the way.
    void sourceChangesMeanwhile_data() {
        QTest::addColumn<QByteArray>("change");
        QTest::addColumn<bool>("succeeds");
        QTest::newRow("grows") << QByteArray("grow") << false;
        QTest::newRow("shrinks") << QByteArray("shrink") << false;
        QTest::newRow("is written to, its time put back") << QByteArray("write") << false;
        QTest::newRow("gives way to a folder") << QByteArray("folder") << false;
        QTest::newRow("gives way to a link") << QByteArray("link") << false;
        QTest::newRow("gives way to another file") << QByteArray("file") << false;
        QTest::newRow("is moved with its folder") << QByteArray("parent") << true;
    }

    void sourceChangesMeanwhile() {
        QFETCH(QByteArray, change);
        QFETCH(bool, succeeds);
        if (!PrivateMounts::unavailable().isEmpty()) {
            QSKIP(qPrintable(PrivateMounts::unavailable()));
        }
        for (const FileOperationKind kind : kinds) {
            cleanup();
            init();
            QVERIFY(separate());
            const QByteArray path = m_from + "/a.mp4";
            const QByteArray aside = m_from + "/aside";
            QVERIFY(write(path, pattern(300'000, 1)));
            QVERIFY(write(m_from + "/outside", "outside"));
            const auto disturb = [&] {
                struct stat status {};
                ::stat(path.constData(), &status);
                if (change == "grow") {
                    const int fd = ::open(path.constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
                    QVERIFY(::write(fd, "more", 4) == 4);
                    ::close(fd);
                } else if (change == "shrink") {
                    QVERIFY(::truncate(path.constData(), 1000) == 0);
                } else if (change == "write") {
                    const int fd = ::open(path.constData(), O_WRONLY | O_CLOEXEC);
                    QVERIFY(::write(fd, "XXXX", 4) == 4);
                    const timespec times[] = {status.st_atim, status.st_mtim};
                    QVERIFY(::futimens(fd, times) == 0);
                    ::close(fd);
                } else if (change == "parent") {
                    QVERIFY(::rename(m_from.constData(), QByteArray(m_from + "-renamed").constData()) == 0);
                } else {
                    QVERIFY(::rename(path.constData(), aside.constData()) == 0);
                    QVERIFY(change == "folder" ? makeDirectory(path)
                            : change == "link" ? ::symlink("outside", path.constData()) == 0
                                               : write(path, "another"));
                }
            };
            bool disturbed = false;
            const auto outcomes = run(kind, {path}, [&] {
                if (!std::exchange(disturbed, true)) {
                    disturb();
                }
                return false;
            });
            QVERIFY(disturbed);
            QCOMPARE(!outcomes[0].error, succeeds);
            const QByteArray folder = change == "parent" ? m_from + "-renamed" : m_from;
            QCOMPARE(read(folder + "/outside"), QByteArray("outside"));
            if (succeeds) {
                QVERIFY(read(m_to + "/a.mp4") == pattern(300'000, 1));
                QCOMPARE(exists(folder + "/a.mp4"), kind == FileOperationKind::copy);
            } else {
                QCOMPARE(names(m_to), QByteArrayList());
                QVERIFY(exists(path));
                QVERIFY(change != "file" || read(path) == "another");
            }
        }
    }

    void stopsInsideAFile() {
        QVERIFY(write(m_from + "/a", pattern(1'000'000, 1)));
        const auto outcomes = run(FileOperationKind::copy, {m_from + "/a"}, [] { return true; });
        // Blocks may have been shared at once; else nothing must be left of the copy.
        QVERIFY(outcomes[0].error ? names(m_to).isEmpty() : read(m_to + "/a") == read(m_from + "/a"));
    }

    void dropsWhatWasNotFlushed() {
        QVERIFY(write(m_from + "/a", "a"));
        {
            FileTransfer transfer(FileURL::directory(m_to), FileOperationKind::copy, {}, {});
            transfer.add(FileURL::fromNativePath(m_from + "/a"));
            QCOMPARE(names(m_to).size(), 1);
            QVERIFY(names(m_to)[0].startsWith(".mosa-"));
        }
        QCOMPARE(names(m_to), QByteArrayList());
    }

    void fullDisk_data() {
        QTest::addColumn<FileOperationKind>("kind");
        QTest::newRow("copy") << FileOperationKind::copy;
        QTest::newRow("move") << FileOperationKind::move;
    }

    void fullDisk() {
        QFETCH(FileOperationKind, kind);
        if (!PrivateMounts::unavailable().isEmpty()) {
            QSKIP(qPrintable(PrivateMounts::unavailable()));
        }
        QVERIFY(separate("size=1m"));
        QVERIFY(write(m_from + "/small 1", pattern(100'000, 1)) &&
                write(m_from + "/large", pattern(2'000'000, 2)) &&
                write(m_from + "/small 2", pattern(100'000, 3)));
        const auto outcomes = run(kind, {m_from + "/small 1", m_from + "/large", m_from + "/small 2"});
        QVERIFY(!outcomes[0].error);
        QCOMPARE(outcomes[1].error.value(), ENOSPC);
        QVERIFY(!outcomes[2].error);
        QCOMPARE(names(m_to), (QByteArrayList{"small 1", "small 2"}));
        QVERIFY(read(m_from + "/large") == pattern(2'000'000, 2));
    }

    void readOnlySource() {
        if (!PrivateMounts::unavailable().isEmpty()) {
            QSKIP(qPrintable(PrivateMounts::unavailable()));
        }
        const MemoryMount card(m_root->path() + "/card", "size=1m");
        QVERIFY(card.isMounted() && write(card.path() + "/a", "a") && card.makeReadOnly());
        QVERIFY(run(FileOperationKind::move, {card.path() + "/a"})[0].error);
        QCOMPARE(names(m_to), QByteArrayList());
        QVERIFY(!run(FileOperationKind::copy, {card.path() + "/a"})[0].error);
        QCOMPARE(read(m_to + "/a"), QByteArray("a"));
    }

    void readOnlyFolder() {
        if (!PrivateMounts::unavailable().isEmpty()) {
            QSKIP(qPrintable(PrivateMounts::unavailable()));
        }
        QVERIFY(separate() && m_mount->makeReadOnly());
        QVERIFY(write(m_from + "/a", "a"));
        for (const FileOperationKind kind : kinds) {
            QVERIFY(run(kind, {m_from + "/a"})[0].error);
            QCOMPARE(read(m_from + "/a"), QByteArray("a"));
        }
    }

    /// Another program takes the very names that the batch is about to take.
    void neverReplacesARacingFile_data() {
        QTest::addColumn<FileOperationKind>("kind");
        QTest::newRow("copy") << FileOperationKind::copy;
        QTest::newRow("move") << FileOperationKind::move;
    }

    void neverReplacesARacingFile() {
        QFETCH(FileOperationKind, kind);
        constexpr int count = 60;
        QByteArrayList sources;
        for (int i = 0; i < count; ++i) {
            const QByteArray folder = m_from + '/' + QByteArray::number(i);
            QVERIFY(makeDirectory(folder) && write(folder + "/a.mp4", "mine"));
            sources.append(folder + "/a.mp4");
        }
        std::atomic_bool done = false;
        std::atomic_int made = 0;
        const auto compete = [&](int step) {
            for (int n = 2; !done && n < 4 * count; n += step) {
                const QByteArray path = m_to + "/a " + QByteArray::number(n) + ".mp4";
                const int fd = ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
                if (fd >= 0) {
                    made += ::write(fd, "other", 5) == 5 ? 1 : 0;
                    ::close(fd);
                }
            }
        };
        std::thread first(compete, 1);
        std::thread second(compete, 3);
        const auto outcomes = run(kind, sources);
        done = true;
        first.join();
        second.join();

        int mine = 0;
        int others = 0;
        for (const QByteArray &name : names(m_to)) {
            const QByteArray content = read(m_to + '/' + name);
            mine += content == "mine" ? 1 : 0;
            others += content == "other" ? 1 : 0;
        }
        QCOMPARE(outcomes.size(), count);
        QCOMPARE(mine, count);
        QCOMPARE(others, made.load());
        QCOMPARE(names(m_to).size(), mine + others);
    }
};

int main(int argc, char **argv) {
    PrivateMounts::enter();
    const QCoreApplication application(argc, argv);
    FileTransferTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "FileTransferTest.moc"
