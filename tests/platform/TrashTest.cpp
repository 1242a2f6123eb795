#include "Trash.h"
#include "FileFixture.h"
#include "PrivateMounts.h"

#include <QtTest>

#include <optional>

#include <sys/stat.h>
#include <unistd.h>

using namespace FileFixture;

class TrashTest : public QObject {
    Q_OBJECT

    std::optional<TemporaryFolder> m_root;
    std::optional<MemoryMount> m_mount;
    QByteArray m_from;
    QByteArray m_home;

    static QList<std::error_code> trash(const QByteArrayList &files) {
        QList<std::error_code> errors;
        Trash batch([&](const Trash::Outcome &outcome) { errors.append(outcome.error); });
        for (const QByteArray &file : files) {
            batch.add(FileURL::fromNativePath(file));
        }
        batch.flush();
        return errors;
    }

    static QByteArray userTrash() { return ".Trash-" + QByteArray::number(::geteuid()); }

    static mode_t modeOf(const QByteArray &path) {
        struct stat status {};
        return ::lstat(path.constData(), &status) == 0 ? status.st_mode & 07777 : 0;
    }

    /// What a desktop's restore command reads: the decoded path of a record, or null.
    static QByteArray recordedPath(const QByteArray &record) {
        const QByteArrayList lines = read(record).split('\n');
        const bool hasShape = lines.size() == 4 && lines[0] == "[Trash Info]" &&
                              lines[1].startsWith("Path=") && lines[2].startsWith("DeletionDate=") &&
                              lines[3].isEmpty();
        return hasShape ? QByteArray::fromPercentEncoding(lines[1].mid(5)) : QByteArray();
    }

private Q_SLOTS:
    void init() {
        m_root.emplace();
        m_from = m_root->path() + "/from";
        m_home = m_root->path() + "/data";
        qputenv("XDG_DATA_HOME", m_home);
        QVERIFY(makeDirectory(m_from));
    }

    void cleanup() {
        m_mount.reset();
        m_root.reset();
    }

    void writesRecords_data() {
        QTest::addColumn<QByteArray>("path");
        QTest::addColumn<QByteArray>("written");
        QTest::newRow("plain") << QByteArray("/home/ada/clip.mp4") << QByteArray("/home/ada/clip.mp4");
        QTest::newRow("blank, percent, line feed")
            << QByteArray("a b/100%\n.jpg") << QByteArray("a%20b/100%25%0A.jpg");
        QTest::newRow("not UTF-8") << QByteArray("/m/\xe9t\xe9.jpg") << QByteArray("/m/%E9t%E9.jpg");
    }

    void writesRecords() {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, written);
        const QDateTime when(QDate(2024, 2, 29), QTime(7, 8, 9));
        QCOMPARE(trashRecord(path, when),
                 "[Trash Info]\nPath=" + written + "\nDeletionDate=2024-02-29T07:08:09\n");
    }

    void movesToTheHomeTrash_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QByteArray>("expected");
        const auto keep = [](const char *title, const QByteArray &name) {
            QTest::newRow(title) << name << name;
        };
        keep("plain", "clip.mp4");
        keep("blanks and signs", "100% [a] #1.jpg");
        keep("line feed", "a\nb.jpg");
        keep("not UTF-8", "\xe9t\xe9.jpg");
        keep("longest that has room for the record", QByteArray(241, 'n') + ".jpg");
        QTest::newRow("longest") << QByteArray(251, 'n') + ".jpg" << QByteArray(241, 'n') + ".jpg";
        QTest::newRow("longest, of two-byte characters")
            << QByteArray("\xc3\xa9").repeated(125) + ".jpg" << QByteArray("\xc3\xa9").repeated(120) + ".jpg";
    }

    void movesToTheHomeTrash() {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, expected);
        QVERIFY(write(m_from + '/' + name, "mine"));

        QVERIFY(!trash({m_from + '/' + name})[0]);

        const QByteArray record = m_home + "/Trash/info/" + expected + ".trashinfo";
        QCOMPARE(read(m_home + "/Trash/files/" + expected), QByteArray("mine"));
        QCOMPARE(recordedPath(record), m_from + '/' + name);
        QCOMPARE(modeOf(record), mode_t(0600));
        QCOMPARE(modeOf(m_home + "/Trash/files"), mode_t(0700));
        QCOMPARE(names(m_from), QByteArrayList());
    }

    void takesFreeNames() {
        const QByteArray trashed = m_home + "/Trash/files/";
        const QByteArray info = m_home + "/Trash/info/";
        QVERIFY(write(m_from + "/a.jpg", "first"));
        QVERIFY(!trash({m_from + "/a.jpg"})[0]);
        QVERIFY(write(m_from + "/a.jpg", "second"));
        // A file whose record was lost, and a record whose file was.
        QVERIFY(write(trashed + "a 2.jpg", "stray") && write(info + "a 3.jpg.trashinfo", "stray"));
        QVERIFY(!trash({m_from + "/a.jpg"})[0]);
        QCOMPARE(read(trashed + "a.jpg"), QByteArray("first"));
        QCOMPARE(read(trashed + "a 2.jpg"), QByteArray("stray"));
        QCOMPARE(read(trashed + "a 4.jpg"), QByteArray("second"));
        QCOMPARE(recordedPath(info + "a 4.jpg.trashinfo"), m_from + "/a.jpg");
        QCOMPARE(names(info), (QByteArrayList{"a 3.jpg.trashinfo", "a 4.jpg.trashinfo", "a.jpg.trashinfo"}));
    }

    void manyOfOneName() {
        constexpr int count = 150;
        QByteArrayList files;
        for (int i = 0; i < count; ++i) {
            const QByteArray folder = m_from + '/' + QByteArray::number(i);
            QVERIFY(makeDirectory(folder) && write(folder + "/a.jpg", QByteArray::number(i)));
            files.append(folder + "/a.jpg");
        }
        for (const std::error_code &error : trash(files)) {
            QVERIFY(!error);
        }
        QCOMPARE(names(m_home + "/Trash/files").size(), count);
        for (const QByteArray &name : names(m_home + "/Trash/files")) {
            const QByteArray number = read(m_home + "/Trash/files/" + name);
            QCOMPARE(recordedPath(m_home + "/Trash/info/" + name + ".trashinfo"),
                     m_from + '/' + number + "/a.jpg");
        }
    }

    void refusesWhatIsNoFile() {
        QVERIFY(write(m_from + "/a", "a") && makeDirectory(m_from + "/folder"));
        QVERIFY(::symlink("a", QByteArray(m_from + "/link").constData()) == 0);
        const auto errors = trash({m_from + "/folder", m_from + "/link", m_from + "/missing", m_from + "/a"});
        QCOMPARE(errors.size(), 4);
        QVERIFY(errors[0] && errors[1] && errors[2] && !errors[3]);
        QCOMPARE(names(m_from), (QByteArrayList{"folder", "link"}));
        QCOMPARE(names(m_home + "/Trash/info"), QByteArrayList{"a.trashinfo"});
    }

    void failsWithoutAUsableHomeTrash_data() {
        QTest::addColumn<QByteArray>("obstacle");
        for (const char *path : {"data", "data/Trash", "data/Trash/files", "data/Trash/info"}) {
            QTest::newRow(path) << QByteArray(path);
        }
    }

    void failsWithoutAUsableHomeTrash() {
        QFETCH(QByteArray, obstacle);
        makeDirectory(m_home);
        makeDirectory(m_home + "/Trash");
        const QByteArray path = m_root->path() + '/' + obstacle;
        ::rmdir(path.constData()) == 0 || ::rmdir(QByteArray(path + "/Trash").constData());
        ::rmdir(path.constData());
        QVERIFY(write(path, "in the way"));
        QVERIFY(write(m_from + "/a", "a"));
        QVERIFY(trash({m_from + "/a"})[0]);
        QCOMPARE(read(m_from + "/a"), QByteArray("a"));
        QCOMPARE(read(path), QByteArray("in the way"));
    }

    /// On a mount with its own trash, however that is prepared.
    void movesToTheTrashOfTheMount_data() {
        QTest::addColumn<QByteArray>("prepared");
        // Relative to the mount; empty where there must be a failure.
        QTest::addColumn<QByteArray>("expected");
        const QByteArray user = QByteArray::number(::geteuid());
        QTest::newRow("nothing") << QByteArray() << userTrash();
        QTest::newRow("shared folder") << QByteArray("sticky") << ".Trash/" + user;
        QTest::newRow("shared folder, not sticky") << QByteArray("loose") << userTrash();
        QTest::newRow("shared folder, a link") << QByteArray("link") << userTrash();
        QTest::newRow("shared folder, the user's a link") << QByteArray("sticky, link") << userTrash();
        QTest::newRow("own folder, a link") << QByteArray("own link") << QByteArray();
        QTest::newRow("own folder, a file") << QByteArray("own file") << QByteArray();
        QTest::newRow("own folder, its records a link") << QByteArray("own info link") << QByteArray();
        QTest::newRow("read-only") << QByteArray("read-only") << QByteArray();
    }

    void movesToTheTrashOfTheMount() {
        QFETCH(QByteArray, prepared);
        QFETCH(QByteArray, expected);
        if (!PrivateMounts::unavailable().isEmpty()) {
            QSKIP(qPrintable(PrivateMounts::unavailable()));
        }
        m_mount.emplace(m_root->path() + "/card", "size=1m");
        QVERIFY(m_mount->isMounted());
        const QByteArray top = m_mount->path();
        const QByteArray outside = top + "/outside";
        QVERIFY(makeDirectory(outside) && makeDirectory(top + "/holiday") &&
                write(top + "/holiday/a b.jpg", "mine"));
        ::chmod(outside.constData(), 01777);
        const QByteArray user = QByteArray::number(::geteuid());
        if (prepared == "sticky" || prepared == "loose" || prepared == "sticky, link") {
            QVERIFY(makeDirectory(top + "/.Trash"));
            ::chmod(QByteArray(top + "/.Trash").constData(), prepared == "loose" ? 0777 : 01777);
        }
        const QByteArray link = prepared == "link"            ? top + "/.Trash"
                                : prepared == "sticky, link"  ? top + "/.Trash/" + user
                                : prepared == "own link"      ? top + '/' + userTrash()
                                : prepared == "own info link" ? top + '/' + userTrash() + "/info"
                                                              : QByteArray();
        QVERIFY(prepared != "own info link" || makeDirectory(top + '/' + userTrash()));
        QVERIFY(link.isEmpty() || ::symlink(outside.constData(), link.constData()) == 0);
        QVERIFY(prepared != "own file" || write(top + '/' + userTrash(), "in the way"));
        QVERIFY(prepared != "read-only" || m_mount->makeReadOnly());
        // Reached through a link on another file system: the record tells the true place.
        QVERIFY(::symlink(top.constData(), QByteArray(m_from + "/link").constData()) == 0);

        const std::error_code error = trash({m_from + "/link/holiday/a b.jpg"})[0];

        QCOMPARE(!error, !expected.isEmpty());
        QCOMPARE(names(outside), QByteArrayList());
        QVERIFY2(!exists(m_home + "/Trash/files/a b.jpg"), "copied into the home trash");
        if (error) {
            QCOMPARE(read(top + "/holiday/a b.jpg"), QByteArray("mine"));
            return;
        }
        QCOMPARE(modeOf(top + '/' + expected), mode_t(0700));
        QCOMPARE(read(top + '/' + expected + "/files/a b.jpg"), QByteArray("mine"));
        QCOMPARE(recordedPath(top + '/' + expected + "/info/a b.jpg.trashinfo"),
                 QByteArray("holiday/a b.jpg"));
        QVERIFY(!exists(top + "/holiday/a b.jpg"));
    }

    void oneBatchOnSeveralMounts() {
        if (!PrivateMounts::unavailable().isEmpty()) {
            QSKIP(qPrintable(PrivateMounts::unavailable()));
        }
        m_mount.emplace(m_root->path() + "/card", "size=1m");
        const MemoryMount inner(m_mount->path() + "/inner", "size=1m");
        const QByteArrayList files{m_from + "/a", m_mount->path() + "/b", inner.path() + "/c"};
        for (const QByteArray &file : files) {
            QVERIFY(write(file, file.right(1)));
        }
        for (const std::error_code &error : trash(files)) {
            QVERIFY(!error);
        }
        QCOMPARE(read(m_home + "/Trash/files/a"), QByteArray("a"));
        QCOMPARE(read(m_mount->path() + '/' + userTrash() + "/files/b"), QByteArray("b"));
        QCOMPARE(read(inner.path() + '/' + userTrash() + "/files/c"), QByteArray("c"));
    }

    /// The record does not fit on the disk: the file stays, and no half record.
    void fullDisk() {
        if (!PrivateMounts::unavailable().isEmpty()) {
            QSKIP(qPrintable(PrivateMounts::unavailable()));
        }
        m_mount.emplace(m_root->path() + "/card", "size=64k");
        const QByteArray top = m_mount->path();
        QVERIFY(write(top + "/first", "1") && write(top + "/a", "a"));
        QVERIFY(!trash({top + "/first"})[0]);
        write(top + "/filling", QByteArray(1 << 20, 'x'));
        QVERIFY(trash({top + "/a"})[0]);
        QCOMPARE(read(top + "/a"), QByteArray("a"));
        QCOMPARE(names(top + '/' + userTrash() + "/info"), QByteArrayList{"first.trashinfo"});
    }

    void dropsWhatWasNotFlushed() {
        QVERIFY(write(m_from + "/a", "a"));
        {
            Trash batch({});
            batch.add(FileURL::fromNativePath(m_from + "/a"));
        }
        QCOMPARE(read(m_from + "/a"), QByteArray("a"));
        QCOMPARE(names(m_home + "/Trash/info"), QByteArrayList());
    }
};

int main(int argc, char **argv) {
    PrivateMounts::enter();
    const QCoreApplication application(argc, argv);
    TrashTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "TrashTest.moc"
