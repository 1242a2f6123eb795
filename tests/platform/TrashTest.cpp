#include "Trash.h"
#include "FileFixture.h"
#include "PrivateMounts.h"

#include <QtTest>

#include <filesystem>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

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

    /// What a desktop's restore command reads: the decoded path of a record, or null.
    static QByteArray recordedPath(const QByteArray &record) {
        const QByteArrayList lines = read(record).split('\n');
        const bool hasShape =
            lines.size() == 4 && lines[0] == "[Trash Info]" && lines[1].startsWith("Path=") &&
            lines[2].startsWith("DeletionDate=") &&
            QDateTime::fromString(QString::fromLatin1(lines[2].mid(13)), u"yyyy-MM-ddTHH:mm:ss"_s)
                .isValid() &&
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
        QTest::newRow("longest, of two-byte characters") << "\xc3\xa9"_ba.repeated(125) + ".jpg"
                                                         << "\xc3\xa9"_ba.repeated(120) + ".jpg";
    }

    void movesToTheHomeTrash() {
        QFETCH(QByteArray, name);
        QFETCH(QByteArray, expected);
        QVERIFY(write(m_from + '/' + name, "mine"));

        QVERIFY(!trash({m_from + '/' + name})[0]);

        const QByteArray record = m_home + "/Trash/info/" + expected + ".trashinfo";
        QCOMPARE(read(m_home + "/Trash/files/" + expected), "mine"_ba);
        QCOMPARE(recordedPath(record), m_from + '/' + name);
        QCOMPARE(modeOf(record), mode_t(0600));
        QCOMPARE(modeOf(m_home + "/Trash/files"), mode_t(0700));
        QCOMPARE(names(m_from), QByteArrayList());
    }

    void takesFreeNames() {
        const QByteArray trashed = m_home + "/Trash/files/";
        const QByteArray info = m_home + "/Trash/info/";
        // A file whose record was lost, and a record whose file was.
        QVERIFY(write(m_from + "/a.jpg", "first") && !trash({m_from + "/a.jpg"})[0]);
        QVERIFY(write(trashed + "a 2.jpg", "stray") && write(info + "a 3.jpg.trashinfo", "stray"));
        QVERIFY(makeDirectory(m_from + "/b") && write(m_from + "/a.jpg", "second") &&
                write(m_from + "/b/a.jpg", "third"));
        const auto errors = trash({m_from + "/a.jpg", m_from + "/b/a.jpg"});
        QVERIFY(!errors[0] && !errors[1]);
        QCOMPARE(read(trashed + "a.jpg"), "first"_ba);
        QCOMPARE(read(trashed + "a 2.jpg"), "stray"_ba);
        QVERIFY(read(trashed + "a 4.jpg") != read(trashed + "a 5.jpg"));
        for (const QByteArray &name : {"a 4.jpg"_ba, "a 5.jpg"_ba}) {
            const QByteArray from = read(trashed + name) == "second" ? "/a.jpg" : "/b/a.jpg";
            QCOMPARE(recordedPath(info + name + ".trashinfo"), m_from + from);
        }
        QCOMPARE(names(info).size(), 4);
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

    void failsWithoutAUsableHomeTrash() {
        QVERIFY(write(m_from + "/a", "a"));
        for (const char *obstacle : {"", "/Trash", "/Trash/files", "/Trash/info"}) {
            std::filesystem::remove_all(m_home.toStdString());
            const QByteArray path = m_home + obstacle;
            std::filesystem::create_directories(path.left(path.lastIndexOf('/')).toStdString());
            QVERIFY(write(path, "in the way"));
            QVERIFY(trash({m_from + "/a"})[0]);
            QCOMPARE(read(m_from + "/a"), "a"_ba);
            QCOMPARE(read(path), "in the way"_ba);
        }
    }

    /// On a mount with its own trash, however that is prepared.
    void movesToTheTrashOfTheMount_data() {
        QTest::addColumn<QByteArray>("prepared");
        // Relative to the mount; empty where there must be a failure.
        QTest::addColumn<QByteArray>("expected");
        const QByteArray user = QByteArray::number(::geteuid());
        QTest::newRow("nothing") << QByteArray() << userTrash();
        QTest::newRow("shared folder") << "sticky"_ba
                                       << ".Trash/" + user;
        QTest::newRow("shared folder, not sticky") << "loose"_ba << userTrash();
        QTest::newRow("shared folder, a link") << "link"_ba << userTrash();
        QTest::newRow("shared folder, the user's a link") << "sticky, link"_ba << userTrash();
        QTest::newRow("own folder, a link") << "own link"_ba << QByteArray();
        QTest::newRow("own folder, a file") << "own file"_ba << QByteArray();
        QTest::newRow("own folder, its records a link") << "own info link"_ba << QByteArray();
        QTest::newRow("read-only") << "read-only"_ba << QByteArray();
    }

    void movesToTheTrashOfTheMount() {
        QFETCH(QByteArray, prepared);
        QFETCH(QByteArray, expected);
        SKIP_WITHOUT_MOUNTS();
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
            QCOMPARE(read(top + "/holiday/a b.jpg"), "mine"_ba);
            return;
        }
        QCOMPARE(modeOf(top + '/' + expected), mode_t(0700));
        QCOMPARE(read(top + '/' + expected + "/files/a b.jpg"), "mine"_ba);
        QCOMPARE(recordedPath(top + '/' + expected + "/info/a b.jpg.trashinfo"), "holiday/a b.jpg"_ba);
        QVERIFY(!exists(top + "/holiday/a b.jpg"));
    }

    void oneBatchOnSeveralMounts() {
        SKIP_WITHOUT_MOUNTS();
        m_mount.emplace(m_root->path() + "/card", "size=1m");
        const MemoryMount inner(m_mount->path() + "/inner", "size=1m");
        const QByteArrayList files{m_from + "/a", m_mount->path() + "/b", inner.path() + "/c"};
        for (const QByteArray &file : files) {
            QVERIFY(write(file, file.right(1)));
        }
        for (const std::error_code &error : trash(files)) {
            QVERIFY(!error);
        }
        QCOMPARE(read(m_home + "/Trash/files/a"), "a"_ba);
        QCOMPARE(read(m_mount->path() + '/' + userTrash() + "/files/b"), "b"_ba);
        QCOMPARE(read(inner.path() + '/' + userTrash() + "/files/c"), "c"_ba);
    }

    void dropsWhatWasNotFlushed() {
        QVERIFY(write(m_from + "/a", "a"));
        {
            Trash batch({});
            batch.add(FileURL::fromNativePath(m_from + "/a"));
        }
        QCOMPARE(read(m_from + "/a"), "a"_ba);
        QCOMPARE(names(m_home + "/Trash/info"), QByteArrayList());
    }
};

PRIVATE_MOUNTS_MAIN(TrashTest)
#include "TrashTest.moc"
