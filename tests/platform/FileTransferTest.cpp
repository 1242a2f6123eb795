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

using namespace Qt::StringLiterals;
using namespace FileFixture;
using MediaMaker::noise;

namespace {

constexpr FileOperationKind kinds[] = {FileOperationKind::copy, FileOperationKind::move};

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
    return value.left(::getxattr(path.constData(), name, value.data(), size_t(value.size())));
}

bool setAttribute(const QByteArray &path, const char *name, const QByteArray &value) {
    return ::setxattr(path.constData(), name, value.constData(), size_t(value.size()), 0) == 0;
}

/// Writes at an offset of a file, made when it is missing, and keeps what is around.
bool patch(const QByteArray &path, const QByteArray &bytes, qint64 offset) {
    const FileDescriptor file(::open(path.constData(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644));
    return ::pwrite(file.get(), bytes.constData(), size_t(bytes.size()), offset) == bytes.size();
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

    static void addKinds(bool across) {
        QTest::addColumn<FileOperationKind>("kind");
        QTest::addColumn<bool>("across");
        for (const FileOperationKind kind : kinds) {
            const char *name = kind == FileOperationKind::copy ? "copy" : "move";
            QTest::newRow(name) << kind << false;
            if (across) {
                QTest::addRow("%s to another file system", name) << kind << true;
            }
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

    void keepsEverything_data() { addKinds(true); }

    void keepsEverything() {
        QFETCH(FileOperationKind, kind);
        QFETCH(bool, across);
        if (across) {
            SKIP_WITHOUT_MOUNTS();
            QVERIFY(separate());
        }
        // Data, a hole, data, a hole at the end.
        const QByteArray source = m_from + "/clip \xff.mp4";
        QByteArray content = noise(700'001, 1) + QByteArray(4 << 20, '\0') + noise(9'000, 2);
        QVERIFY(patch(source, content.left(700'001), 0) &&
                patch(source, content.right(9'000), content.size() - 9'000));
        content.resize(8 << 20, '\0');
        QVERIFY(::truncate(source.constData(), 8 << 20) == 0);
        const QByteArray comment("sea\0side", 8);
        const QByteArray list = accessList();
        const bool holdsAttributes =
            setAttribute(source, "user.comment", comment) && setAttribute(m_to, "user.test", {});
        const bool holdsLists = setAttribute(source, "system.posix_acl_access", list) &&
                                setAttribute(m_to, "system.posix_acl_access", list);
        const timespec times[] = {{1'000'000'001, 123'456'789}, {999'999'999, 987'654'321}};
        QVERIFY(::utimensat(AT_FDCWD, source.constData(), times, 0) == 0);
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
        QVERIFY(memcmp(&after.st_mtim, &before.st_mtim, sizeof after.st_mtim) == 0);
        QVERIFY(memcmp(&after.st_atim, &before.st_atim, sizeof after.st_atim) == 0);
        QVERIFY(!holdsAttributes || attribute(target, "user.comment") == comment);
        QVERIFY(!holdsLists || attribute(target, "system.posix_acl_access") == list);
        QVERIFY2(qint64(after.st_blocks) * 512 < (4 << 20), "holes were filled");
        QVERIFY(read(target) == content);
        QCOMPARE(exists(source), kind == FileOperationKind::copy);
        QCOMPARE(names(m_to).size(), 1);
    }

    /// A folder may give its new files an access list; a copy has its original's rights all the same.
    void takesNoRightsFromTheFolder() {
        if (!setAttribute(m_to, "system.posix_acl_default", accessList())) {
            QSKIP("no access lists on the file system of temporary files");
        }
        QVERIFY(write(m_from + "/a.jpg", "a"));
        QVERIFY(::chmod(QByteArray(m_from + "/a.jpg").constData(), 0640) == 0);
        QVERIFY(!run(FileOperationKind::copy, {m_from + "/a.jpg"})[0].error);
        QCOMPARE(attribute(m_to + "/a.jpg", "system.posix_acl_access"), QByteArray());
        QCOMPARE(modeOf(m_to + "/a.jpg"), mode_t(0640));
    }

    void takesTheNextFreeName_data() {
        QTest::addColumn<QByteArray>("name");
        // Folders end with a slash, dead links with an @.
        QTest::addColumn<QByteArrayList>("taken");
        QTest::addColumn<QByteArray>("expected");
        const QByteArray longest = QByteArray(251, 'n') + ".mp4";
        QTest::newRow("free") << "a.mp4"_ba << QByteArrayList{} << "a.mp4"_ba;
        QTest::newRow("files") << "a.mp4"_ba << QByteArrayList{"a.mp4", "a 2.mp4"} << "a 3.mp4"_ba;
        QTest::newRow("a gap") << "a.mp4"_ba << QByteArrayList{"a.mp4", "a 3.mp4"} << "a 2.mp4"_ba;
        QTest::newRow("a folder and a dead link") << "a"_ba << QByteArrayList{"a/", "a 2@"} << "a 3"_ba;
        const auto second = [](const char *title, const QByteArray &taken, const QByteArray &expected) {
            QTest::newRow(title) << taken << QByteArrayList{taken} << expected;
        };
        second("two dots", "archive.tar.gz", "archive.tar 2.gz");
        second("leading dot", ".mp4", ".mp4 2");
        second("not UTF-8", "\xff\xfe.mp4", "\xff\xfe 2.mp4");
        // Characters of two bytes, of which one byte too many must go.
        const QByteArray accents = "\xc3\xa9"_ba.repeated(125);
        second("no room, between characters", accents + ".mp4", accents.left(248) + " 2.mp4");
        second("no character to keep whole", QByteArray(251, '\x80') + ".mp4",
               QByteArray(249, '\x80') + " 2.mp4");
        const QByteArray hugeExtension = "a." + QByteArray(253, 'x');
        second("extension leaves no room", hugeExtension, hugeExtension.left(253) + " 2");
        second("no room", longest, QByteArray(249, 'n') + " 2.mp4");
    }

    void takesTheNextFreeName() {
        QFETCH(QByteArray, name);
        QFETCH(QByteArrayList, taken);
        QFETCH(QByteArray, expected);
        for (const FileOperationKind kind : kinds) {
            cleanup();
            init();
            for (const QByteArray &other : taken) {
                const QByteArray path = m_to + '/' + other;
                QVERIFY(other.endsWith('/')   ? makeDirectory(path)
                        : other.endsWith('@') ? ::symlink("nowhere", path.chopped(1).constData()) == 0
                                              : write(path, "other"));
            }
            QVERIFY(write(m_from + '/' + name, "mine"));

            const auto outcomes = run(kind, {m_from + '/' + name});

            QVERIFY(!outcomes[0].error);
            QCOMPARE(outcomes[0].destination.nativeName(), expected);
            QCOMPARE(read(m_to + '/' + expected), "mine"_ba);
            QCOMPARE(names(m_to).size(), taken.size() + 1);
            for (const QByteArray &other : taken) {
                QVERIFY(!other.endsWith("mp4") || read(m_to + '/' + other) == "other");
            }
        }
    }

    void worksInOneFolder() {
        m_to = m_from;
        QVERIFY(write(m_from + "/a.mp4", "a"));
        QVERIFY(!run(FileOperationKind::copy, {m_from + "/a.mp4"})[0].error);
        QCOMPARE(names(m_from), (QByteArrayList{"a 2.mp4", "a.mp4"}));
        QVERIFY(!run(FileOperationKind::move, {m_from + "/a.mp4"})[0].error);
        QCOMPARE(names(m_from), (QByteArrayList{"a 2.mp4", "a 3.mp4"}));
    }

    void refusesWhatIsNoFile_data() { addKinds(true); }

    void refusesWhatIsNoFile() {
        QFETCH(FileOperationKind, kind);
        QFETCH(bool, across);
        if (across) {
            SKIP_WITHOUT_MOUNTS();
            QVERIFY(separate());
        }
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

    /// The hook runs while the content is being copied, which is when another program gets in the way.
    void sourceChangesMeanwhile_data() {
        QTest::addColumn<QByteArray>("change");
        QTest::newRow("grows") << "grow"_ba;
        QTest::newRow("shrinks") << "shrink"_ba;
        QTest::newRow("is written to, its time put back") << "write"_ba;
        QTest::newRow("gives way to a folder") << "folder"_ba;
        QTest::newRow("gives way to a link") << "link"_ba;
        QTest::newRow("gives way to another file") << "file"_ba;
        QTest::newRow("is moved with its folder, which does no harm") << "parent"_ba;
    }

    void disturb(const QByteArray &change, const QByteArray &path) const {
        if (change == "grow") {
            QVERIFY(patch(path, "more", 300'000));
        } else if (change == "shrink") {
            QVERIFY(::truncate(path.constData(), 1000) == 0);
        } else if (change == "write") {
            struct stat status {};
            QVERIFY(::stat(path.constData(), &status) == 0 && patch(path, "XXXX", 0));
            const timespec times[] = {status.st_atim, status.st_mtim};
            QVERIFY(::utimensat(AT_FDCWD, path.constData(), times, 0) == 0);
        } else if (change == "parent") {
            QVERIFY(::rename(m_from.constData(), QByteArray(m_from + "-renamed").constData()) == 0);
        } else {
            QVERIFY(::rename(path.constData(), QByteArray(m_from + "/aside").constData()) == 0);
            QVERIFY(change == "folder" ? makeDirectory(path)
                    : change == "link" ? ::symlink("outside", path.constData()) == 0
                                       : write(path, "another"));
        }
    }

    void sourceChangesMeanwhile() {
        QFETCH(QByteArray, change);
        SKIP_WITHOUT_MOUNTS();
        for (const FileOperationKind kind : kinds) {
            cleanup();
            init();
            QVERIFY(separate());
            const QByteArray path = m_from + "/a.mp4";
            QVERIFY(write(path, noise(300'000)) && write(m_from + "/outside", "outside"));
            bool disturbed = false;
            const auto outcomes = run(kind, {path}, [&] {
                if (!std::exchange(disturbed, true)) {
                    disturb(change, path);
                }
                return false;
            });
            QVERIFY(disturbed);
            QCOMPARE(!outcomes[0].error, change == "parent");
            const QByteArray folder = change == "parent" ? m_from + "-renamed" : m_from;
            QCOMPARE(read(folder + "/outside"), "outside"_ba);
            if (change == "parent") {
                QVERIFY(read(m_to + "/a.mp4") == noise(300'000));
                QCOMPARE(exists(folder + "/a.mp4"), kind == FileOperationKind::copy);
            } else {
                QCOMPARE(names(m_to), QByteArrayList());
                QVERIFY(exists(path));
                QVERIFY(change != "file" || read(path) == "another");
            }
        }
    }

    /// Asked to stop, at once or when only the disk is waited for, or given up by a program that ends.
    void leavesNothingOfWhatStops() {
        constexpr int size = 1'000'000;
        QVERIFY(write(m_from + "/a", noise(size)));
        const StopRequest atOnce = [] { return true; };
        const StopRequest onceCopied = [&] { return read(m_to + '/' + names(m_to).value(0)).size() == size; };
        const StopRequest givenUp = [] {
            StagedFile::removeAll();
            return false;
        };
        for (const StopRequest &stop : {atOnce, onceCopied, givenUp}) {
            QVERIFY(run(FileOperationKind::copy, {m_from + "/a"}, stop)[0].error);
            QCOMPARE(names(m_to), QByteArrayList());
        }
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

    void fullDisk_data() { addKinds(false); }

    void fullDisk() {
        QFETCH(FileOperationKind, kind);
        SKIP_WITHOUT_MOUNTS();
        QVERIFY(separate("size=1m"));
        QByteArrayList sources;
        for (const int size : {100'000, 2'000'000, 100'001}) {
            sources.append(m_from + '/' + QByteArray::number(size));
            QVERIFY(write(sources.last(), noise(size)));
        }
        const auto outcomes = run(kind, sources);
        QVERIFY(!outcomes[0].error && !outcomes[2].error);
        QCOMPARE(outcomes[1].error.value(), ENOSPC);
        QCOMPARE(names(m_to), (QByteArrayList{"100000", "100001"}));
        QVERIFY(read(sources[1]) == noise(2'000'000));
    }

    /// Another program takes the very names that the batch is about to take.
    void neverReplacesARacingFile_data() { addKinds(false); }

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
                const FileDescriptor file(
                    ::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
                made += file.isOpen() && ::write(file.get(), "other", 5) == 5 ? 1 : 0;
            }
        };
        std::thread first(compete, 1);
        std::thread second(compete, 3);
        const auto outcomes = run(kind, sources);
        done = true;
        first.join();
        second.join();

        QByteArrayList contents;
        for (const QByteArray &name : names(m_to)) {
            contents.append(read(m_to + '/' + name));
        }
        QCOMPARE(outcomes.size(), count);
        QCOMPARE(contents.count("mine"), count);
        QCOMPARE(contents.count("other"), made.load());
        QCOMPARE(contents.size(), count + made);
    }
};

PRIVATE_MOUNTS_MAIN(FileTransferTest)
#include "FileTransferTest.moc"
