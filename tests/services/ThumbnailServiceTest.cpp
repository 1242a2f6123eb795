#include "ThumbnailService.h"

#include "ThumbnailDiskCache.h"

#include <QDir>
#include <QFile>
#include <QMutex>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class ThumbnailServiceTest : public QObject {
    Q_OBJECT

    using Future = QFuture<QImage>;

    static constexpr int limit = 60'000;

    std::unique_ptr<QTemporaryDir> m_folder;
    QMutex m_mutex;
    QStringList m_made;
    QImage m_picture;
    /// The generator of this file waits until it is released.
    QString m_hanging;
    QSemaphore m_release;
    std::atomic<int> m_running = 0;
    // Last, so that it ends before what its threads use.
    std::unique_ptr<ThumbnailService> m_service;

    void start(std::chrono::milliseconds patience = 1min) {
        m_service = std::make_unique<ThumbnailService>(ThumbnailService::Settings{
            .cacheDirectory = FileURL::fromPath(m_folder->path() + u"/Mosa/Thumbnails"_s),
            .generate = [this](const MediaFile &file, int) { return generate(file); },
            .patience = patience});
    }

    QImage generate(const MediaFile &file) {
        const QString name = file.url.lastPathComponent();
        ++m_running;
        {
            const QMutexLocker lock(&m_mutex);
            m_made.append(name);
        }
        if (name == m_hanging) {
            m_release.acquire();
        }
        --m_running;
        return m_picture;
    }

    /// What was generated, in order.
    QString made() {
        const QMutexLocker lock(&m_mutex);
        return m_made.join(u' ');
    }
    static MediaFile photo(int number) {
        return {.url = FileURL::fromNativePath("/photos/" + QByteArray::number(number)),
                .kind = MediaKind::photo};
    }
    Future ask(int number) { return m_service->image(photo(number), 720); }
    static bool ends(const Future &future) {
        return QTest::qWaitFor([&] { return future.isFinished(); }, limit);
    }
    QImage answer(int number) {
        const Future future = ask(number);
        return ends(future) ? future.result() : QImage();
    }

private Q_SLOTS:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_picture = QImage(72, 48, QImage::Format_RGB32);
        m_picture.fill(Qt::darkCyan);
        m_made.clear();
        m_hanging.clear();
    }

    void cleanup() {
        m_release.release(100);
        m_service.reset();
        m_release.acquire(m_release.available());
    }

    void answersFromMemoryElseFromDisk() {
        start();
        QCOMPARE(answer(1).size(), QSize(72, 48));
        QVERIFY(m_service->finish(30s));
        start();
        const QImage fromDisk = answer(1);
        QCOMPARE(fromDisk.size(), QSize(72, 48));
        QVERIFY(QDir(m_folder->path()).removeRecursively());
        QCOMPARE(answer(1), fromDisk);
        QCOMPARE(made(), "1"_L1);
    }

    void failureIsNotRemembered() {
        start();
        const QImage picture = std::exchange(m_picture, QImage());
        const Future failed = ask(1);
        QVERIFY(ends(failed) && failed.result().isNull());
        m_picture = picture;
        QVERIFY(!answer(1).isNull());
    }

    void alphaIsPutOnTheDarkLayer() {
        start();
        m_picture = QImage(72, 48, QImage::Format_ARGB32_Premultiplied);
        m_picture.fill(Qt::transparent);
        const QImage image = answer(1);
        QVERIFY(!image.isNull() && !image.hasAlphaChannel());
        QVERIFY(qGray(image.pixel(10, 10)) < 8);
    }

    void skipsWhatWasCancelledBeforeItsTurn() {
        m_hanging = u"0"_s;
        start();
        const Future first = ask(0);
        QTRY_COMPARE_WITH_TIMEOUT(made(), "0"_L1, limit);
        for (int i = 1; i < 100; ++i) {
            ask(i).cancel();
        }
        const Future wanted = ask(100);
        m_release.release();
        QVERIFY(ends(wanted) && first.isFinished());
        QCOMPARE(made(), "0 100"_L1);
    }

    void passesAFileThatHangs() {
        m_hanging = u"0"_s;
        start(50ms);
        const Future hanging = ask(0);
        const Future again = ask(0);
        QVERIFY(!answer(1).isNull());
        QVERIFY(!hanging.isFinished());
        // It answers in the end, everyone who asked.
        m_release.release();
        QVERIFY(ends(hanging) && ends(again));
        QVERIFY(!hanging.result().isNull() && !again.result().isNull());
        QCOMPARE(made(), "0 1"_L1);
    }

    void endsWithManyRequestsWaiting() {
        m_hanging = u"0"_s;
        start();
        QList<Future> futures;
        for (int i = 0; i < 1000; ++i) {
            futures.append(ask(i));
        }
        QTRY_COMPARE_WITH_TIMEOUT(made(), "0"_L1, limit);
        m_release.release();
        QVERIFY(m_service->finish(30s));
        for (const Future &future : std::as_const(futures)) {
            QVERIFY(future.isFinished());
        }
        QVERIFY(futures.last().isCanceled());
        QVERIFY(ask(1).isCanceled());
    }

    void leavesAHangingThreadBehind() {
        m_hanging = u"0"_s;
        start();
        const Future hanging = ask(0);
        QTRY_COMPARE_WITH_TIMEOUT(made(), "0"_L1, limit);
        QVERIFY(!m_service->finish(10ms));
        QVERIFY(hanging.isCanceled());
        QVERIFY(!m_service->finish(10ms));
        m_release.release();
        QTRY_COMPARE_WITH_TIMEOUT(m_running.load(), 0, limit);
    }

    void preparesOnlyWhileIdle() {
        m_hanging = u"0"_s;
        start();
        const Future first = ask(0);
        QTRY_COMPARE_WITH_TIMEOUT(made(), "0"_L1, limit);
        // A later list takes the place of an earlier one.
        m_service->prefetch({photo(8), photo(9)}, 720);
        m_service->prefetch({photo(10), photo(11), photo(1)}, 720);
        const Future second = ask(1);
        m_release.release();
        QTRY_COMPARE_WITH_TIMEOUT(made(), "0 1 10 11"_L1, limit);
        QVERIFY(!answer(11).isNull());
        QCOMPARE(made(), "0 1 10 11"_L1);
    }

    void idleWorkDoesNotHoldUpThePage() {
        m_hanging = u"10"_s;
        start();
        m_service->prefetch({photo(10), photo(11)}, 720);
        QTRY_COMPARE_WITH_TIMEOUT(made(), "10"_L1, limit);
        QVERIFY(!answer(1).isNull());
        QCOMPARE(made(), "10 1"_L1);
    }

    void worksWithoutADirectory() {
        QFile inTheWay(m_folder->filePath(u"Mosa"_s));
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        start();
        QVERIFY(!answer(1).isNull());
    }
};

QTEST_GUILESS_MAIN(ThumbnailServiceTest)
#include "ThumbnailServiceTest.moc"
