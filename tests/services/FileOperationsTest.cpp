#include "FileOperations.h"
#include "BackgroundTask.h"
#include "FileFixture.h"

#include <QSemaphore>
#include <QThread>
#include <QtTest>

#include <atomic>
#include <optional>

using namespace Qt::StringLiterals;
using namespace FileFixture;

class FileOperationsTest : public QObject {
    Q_OBJECT

    std::optional<TemporaryFolder> m_root;
    QByteArray m_from;
    QByteArray m_to;
    QByteArrayList m_reports;

    QList<FileURL> makeFiles(int count) const {
        QList<FileURL> files;
        for (int i = 0; i < count; ++i) {
            const QByteArray path = m_from + '/' + QByteArray::number(i) + ".jpg";
            write(path, MediaMaker::noise(1000, quint32(i)));
            files.append(FileURL::fromNativePath(path));
        }
        return files;
    }

    FileOperations::Progress progress() {
        return [this](qsizetype done, qsizetype total) {
            m_reports.append(QByteArray::number(done) + '/' + QByteArray::number(total));
        };
    }

    template <typename Result>
    static bool ends(const QFuture<Result> &future) {
        return QTest::qWaitFor([&] { return future.isFinished(); }, 60'000);
    }

    bool reportedEachOf(qsizetype total) {
        QByteArrayList expected;
        for (qsizetype done = 1; done <= total; ++done) {
            expected.append(QByteArray::number(done) + '/' + QByteArray::number(total));
        }
        return m_reports == expected;
    }

private Q_SLOTS:
    void init() {
        m_root.emplace();
        m_from = m_root->path() + "/from";
        m_to = m_root->path() + "/to";
        m_reports.clear();
        qputenv("XDG_DATA_HOME", m_root->path());
        QVERIFY(makeDirectory(m_from) && makeDirectory(m_to));
    }

    void transfersInOrderAndReports() {
        const FileURL missing = FileURL::fromNativePath(m_from + "/missing.jpg");
        for (const FileOperationKind kind : {FileOperationKind::copy, FileOperationKind::move}) {
            QList<FileURL> files = makeFiles(40);
            QList<FileURL> asked = files;
            asked.insert(0, missing);
            asked.insert(20, missing);
            m_reports.clear();
            const auto future = FileOperations::transfer(asked, FileURL::directory(m_to), kind, progress());
            QVERIFY(ends(future));

            const FileTransferResult result = future.result();
            QCOMPARE(result.failures, (QList<FileURL>{missing, missing}));
            QCOMPARE(result.sources, files);
            QCOMPARE(result.destinations.size(), 40);
            for (int i = 0; i < 40; ++i) {
                QVERIFY(read(result.destinations.at(i).nativePath()) == MediaMaker::noise(1000, quint32(i)));
                QCOMPARE(exists(files.at(i).nativePath()), kind == FileOperationKind::copy);
            }
            QVERIFY(reportedEachOf(42));
        }
    }

    void trashesInOrderAndReports() {
        QList<FileURL> files = makeFiles(100);
        files.insert(50, FileURL::directory(m_to));
        const auto future = FileOperations::trash(files, progress());
        QVERIFY(ends(future));
        files.removeAt(50);
        QCOMPARE(future.result(), files);
        QCOMPARE(names(m_from), QByteArrayList());
        QCOMPARE(names(m_root->path() + "/Trash/files").size(), 100);
        QVERIFY(exists(m_to));
        QVERIFY(reportedEachOf(101));
    }

    /// The program ends: the batch stops between two files, or within a large one, and leaves nothing half
    /// done.
    void stopsWhenCancelled() {
        const QList<FileURL> files = makeFiles(200);
        std::atomic_bool go = false;
        QSemaphore begun;
        const auto wait = [&](qsizetype done, qsizetype) {
            if (done == 1) {
                begun.release();
            }
            while (!go) {
                QThread::msleep(1);
            }
        };
        auto future =
            FileOperations::transfer(files, FileURL::directory(m_to), FileOperationKind::move, wait);
        QVERIFY(begun.tryAcquire(1, 60'000));
        future.cancel();
        go = true;
        QVERIFY(ends(future));
        QTRY_VERIFY_WITH_TIMEOUT(BackgroundTask::pool().activeThreadCount() == 0, 60'000);

        const QByteArrayList copied = names(m_to);
        QVERIFY(!copied.isEmpty() && copied.size() < 200);
        for (int i = 0; i < 200; ++i) {
            const QByteArray name = QByteArray::number(i) + ".jpg";
            const bool atTarget = copied.contains(name);
            QVERIFY(!atTarget || read(m_to + '/' + name) == MediaMaker::noise(1000, quint32(i)));
            QCOMPARE(exists(m_from + '/' + name), !atTarget);
        }
        QVERIFY(std::none_of(copied.begin(), copied.end(), [](const auto &name) { return name[0] == '.'; }));
    }
};

QTEST_GUILESS_MAIN(FileOperationsTest)
#include "FileOperationsTest.moc"
