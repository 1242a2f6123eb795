#include "ThumbnailService.h"

#include "ThumbnailDiskCache.h"

#include <QDir>
#include <QFile>
#include <QMutex>
#include <QSemaphore>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

using namespace std::chrono_literals;

class ThumbnailServiceTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void answersFromMemory();
    void answersFromDiskAfterARestart();
    void failureIsNotRemembered();
    void alphaIsPutOnTheDarkLayer();
    void servesInOrderOneAtATime();
    void skipsWhatWasCancelledBeforeItsTurn();
    void passesAFileThatHangs();
    void joinsAFileThatHangs();
    void endsWithManyRequestsWaiting();
    void leavesAHangingThreadBehind();
    void preparesOnlyWhileIdle();
    void prefetchIsWithdrawn();
    void idleWorkDoesNotHoldUpThePage();
    void twoProgramsShareTheDirectory();
    void worksWithoutADirectory();

private:
    ThumbnailService &service(std::chrono::milliseconds patience = 1min);
    QImage generate(const MediaFile &file);
    QStringList made() {
        const QMutexLocker lock(&m_mutex);
        return m_made;
    }
    static MediaFile photo(int number) {
        return {.url = FileURL::fromNativePath("/photos/" + QByteArray::number(number)),
                .kind = MediaKind::photo};
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QMutex m_mutex;
    QStringList m_made;
    QImage m_picture;
    /// Generators named here wait until they are released.
    QSet<QString> m_hanging;
    QSemaphore m_release;
    std::atomic<int> m_running = 0;
    std::atomic<int> m_mostRunning = 0;
    // Last, so that it ends before what its threads use.
    std::unique_ptr<ThumbnailService> m_service;
};

void ThumbnailServiceTest::init() {
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_picture = QImage(72, 48, QImage::Format_RGB32);
    m_picture.fill(Qt::darkCyan);
    m_made.clear();
    m_hanging.clear();
    m_mostRunning = 0;
}

void ThumbnailServiceTest::cleanup() {
    m_release.release(100);
    m_service.reset();
    m_release.acquire(m_release.available());
}

ThumbnailService &ThumbnailServiceTest::service(std::chrono::milliseconds patience) {
    m_service = std::make_unique<ThumbnailService>(ThumbnailService::Settings{
        .cacheDirectory = FileURL::fromPath(m_folder->path() + QStringLiteral("/Mosa/Thumbnails")),
        .generate = [this](const MediaFile &file, int) { return generate(file); },
        .patience = patience});
    return *m_service;
}

QImage ThumbnailServiceTest::generate(const MediaFile &file) {
    const QString name = file.url.lastPathComponent();
    const int running = ++m_running;
    if (running > m_mostRunning) {
        m_mostRunning = running;
    }
    bool hangs = false;
    {
        const QMutexLocker lock(&m_mutex);
        m_made.append(name);
        hangs = m_hanging.contains(name);
    }
    if (hangs) {
        m_release.acquire();
    }
    --m_running;
    return m_picture;
}

void ThumbnailServiceTest::answersFromMemory() {
    ThumbnailService &tested = service();
    QFuture<QImage> first = tested.image(photo(1), 720);
    QTRY_VERIFY_WITH_TIMEOUT(first.isFinished(), 30'000);
    QCOMPARE(first.result().size(), QSize(72, 48));
    QVERIFY(QDir(m_folder->path()).removeRecursively());
    QFuture<QImage> second = tested.image(photo(1), 720);
    QTRY_VERIFY_WITH_TIMEOUT(second.isFinished(), 30'000);
    QCOMPARE(second.result(), first.result());
    QCOMPARE(made().size(), 1);
}

void ThumbnailServiceTest::answersFromDiskAfterARestart() {
    QFuture<QImage> first = service().image(photo(1), 720);
    QTRY_VERIFY_WITH_TIMEOUT(first.isFinished(), 30'000);
    QVERIFY(m_service->finish(30s));
    QFuture<QImage> second = service().image(photo(1), 720);
    QTRY_VERIFY_WITH_TIMEOUT(second.isFinished(), 30'000);
    QCOMPARE(second.result().size(), QSize(72, 48));
    QCOMPARE(second.result().format(), QImage::Format_RGB32);
    QCOMPARE(made().size(), 1);
}

void ThumbnailServiceTest::failureIsNotRemembered() {
    ThumbnailService &tested = service();
    const QImage picture = std::exchange(m_picture, QImage());
    QFuture<QImage> first = tested.image(photo(1), 720);
    QTRY_VERIFY_WITH_TIMEOUT(first.isFinished(), 30'000);
    QVERIFY(first.result().isNull());
    m_picture = picture;
    QFuture<QImage> second = tested.image(photo(1), 720);
    QTRY_VERIFY_WITH_TIMEOUT(second.isFinished(), 30'000);
    QVERIFY(!second.result().isNull());
}

void ThumbnailServiceTest::alphaIsPutOnTheDarkLayer() {
    m_picture = QImage(72, 48, QImage::Format_ARGB32_Premultiplied);
    m_picture.fill(Qt::transparent);
    QFuture<QImage> future = service().image(photo(1), 720);
    QTRY_VERIFY_WITH_TIMEOUT(future.isFinished(), 30'000);
    QVERIFY(!future.result().hasAlphaChannel());
    QVERIFY(qGray(future.result().pixel(10, 10)) < 8);
}

void ThumbnailServiceTest::servesInOrderOneAtATime() {
    ThumbnailService &tested = service();
    QList<QFuture<QImage>> futures;
    QStringList expected;
    for (int i = 0; i < 40; ++i) {
        futures.append(tested.image(photo(i), 720));
        expected.append(QString::number(i));
    }
    QTRY_VERIFY_WITH_TIMEOUT(futures.last().isFinished(), 60'000);
    QCOMPARE(made(), expected);
    QCOMPARE(m_mostRunning.load(), 1);
}

void ThumbnailServiceTest::skipsWhatWasCancelledBeforeItsTurn() {
    m_hanging = {QStringLiteral("0")};
    ThumbnailService &tested = service();
    QFuture<QImage> first = tested.image(photo(0), 720);
    QTRY_COMPARE_WITH_TIMEOUT(made().size(), 1, 30'000);
    QList<QFuture<QImage>> left;
    for (int i = 1; i < 100; ++i) {
        left.append(tested.image(photo(i), 720));
    }
    QFuture<QImage> wanted = tested.image(photo(100), 720);
    for (QFuture<QImage> &future : left) {
        future.cancel();
    }
    m_release.release();
    QTRY_VERIFY_WITH_TIMEOUT(wanted.isFinished(), 30'000);
    QCOMPARE(made(), (QStringList{QStringLiteral("0"), QStringLiteral("100")}));
    QVERIFY(first.isFinished());
}

void ThumbnailServiceTest::passesAFileThatHangs() {
    m_hanging = {QStringLiteral("0")};
    ThumbnailService &tested = service(50ms);
    QFuture<QImage> hanging = tested.image(photo(0), 720);
    QFuture<QImage> other = tested.image(photo(1), 720);
    QTRY_VERIFY_WITH_TIMEOUT(other.isFinished(), 30'000);
    QVERIFY(!other.result().isNull());
    QVERIFY(!hanging.isFinished());
    // It answers in the end.
    m_release.release();
    QTRY_VERIFY_WITH_TIMEOUT(hanging.isFinished(), 30'000);
    QVERIFY(!hanging.result().isNull());
}

void ThumbnailServiceTest::joinsAFileThatHangs() {
    m_hanging = {QStringLiteral("0")};
    ThumbnailService &tested = service(20ms);
    QFuture<QImage> first = tested.image(photo(0), 720);
    QFuture<QImage> again = tested.image(photo(0), 720);
    QFuture<QImage> other = tested.image(photo(1), 720);
    QTRY_VERIFY_WITH_TIMEOUT(other.isFinished(), 30'000);
    QCOMPARE(made().count(QStringLiteral("0")), 1);
    m_release.release();
    QTRY_VERIFY_WITH_TIMEOUT(first.isFinished() && again.isFinished(), 30'000);
    QVERIFY(!again.result().isNull());
    QCOMPARE(made().count(QStringLiteral("0")), 1);
}

void ThumbnailServiceTest::endsWithManyRequestsWaiting() {
    m_hanging = {QStringLiteral("0")};
    ThumbnailService &tested = service();
    QList<QFuture<QImage>> futures;
    for (int i = 0; i < 1000; ++i) {
        futures.append(tested.image(photo(i), 720));
    }
    QTRY_COMPARE_WITH_TIMEOUT(made().size(), 1, 30'000);
    m_release.release();
    QVERIFY(tested.finish(30s));
    for (const QFuture<QImage> &future : std::as_const(futures)) {
        QVERIFY(future.isFinished());
    }
    QVERIFY(futures.last().isCanceled());
    QVERIFY(tested.image(photo(1), 720).isCanceled());
    QVERIFY(made().size() < 1000);
}

void ThumbnailServiceTest::leavesAHangingThreadBehind() {
    m_hanging = {QStringLiteral("0")};
    ThumbnailService &tested = service();
    QFuture<QImage> hanging = tested.image(photo(0), 720);
    QTRY_COMPARE_WITH_TIMEOUT(made().size(), 1, 30'000);
    QVERIFY(!tested.finish(10ms));
    QVERIFY(hanging.isCanceled());
    QVERIFY(!tested.finish(10ms));
    m_release.release();
    QTRY_COMPARE_WITH_TIMEOUT(m_running.load(), 0, 30'000);
}

void ThumbnailServiceTest::preparesOnlyWhileIdle() {
    m_hanging = {QStringLiteral("0")};
    ThumbnailService &tested = service();
    QFuture<QImage> first = tested.image(photo(0), 720);
    QTRY_COMPARE_WITH_TIMEOUT(made().size(), 1, 30'000);
    tested.prefetch({photo(10), photo(11), photo(1)}, 720);
    QFuture<QImage> second = tested.image(photo(1), 720);
    m_release.release();
    QTRY_COMPARE_WITH_TIMEOUT(made().size(), 4, 30'000);
    QCOMPARE(made().join(u' '), QStringLiteral("0 1 10 11"));
    QTest::qWait(20);
    QFuture<QImage> prepared = tested.image(photo(11), 720);
    QTRY_VERIFY_WITH_TIMEOUT(prepared.isFinished(), 30'000);
    QCOMPARE(made().size(), 4);
}

void ThumbnailServiceTest::prefetchIsWithdrawn() {
    m_hanging = {QStringLiteral("0")};
    ThumbnailService &tested = service();
    QFuture<QImage> first = tested.image(photo(0), 720);
    tested.prefetch({photo(10), photo(11)}, 720);
    tested.prefetch({photo(12)}, 720);
    m_release.release();
    QTRY_COMPARE_WITH_TIMEOUT(made().size(), 2, 30'000);
    QFuture<QImage> last = tested.image(photo(2), 720);
    QTRY_VERIFY_WITH_TIMEOUT(last.isFinished(), 30'000);
    QCOMPARE(made().join(u' '), QStringLiteral("0 12 2"));
}

void ThumbnailServiceTest::idleWorkDoesNotHoldUpThePage() {
    m_hanging = {QStringLiteral("10")};
    ThumbnailService &tested = service();
    tested.prefetch({photo(10), photo(11)}, 720);
    QTRY_COMPARE_WITH_TIMEOUT(made().size(), 1, 30'000);
    QFuture<QImage> wanted = tested.image(photo(1), 720);
    QTRY_VERIFY_WITH_TIMEOUT(wanted.isFinished(), 30'000);
    QVERIFY(!wanted.result().isNull());
    QCOMPARE(made().join(u' '), QStringLiteral("10 1"));
}

void ThumbnailServiceTest::twoProgramsShareTheDirectory() {
    ThumbnailService &first = service();
    const auto other = std::make_unique<ThumbnailService>(ThumbnailService::Settings{
        .cacheDirectory = FileURL::fromPath(m_folder->path() + QStringLiteral("/Mosa/Thumbnails")),
        .generate = [this](const MediaFile &file, int) { return generate(file); }});
    QList<QFuture<QImage>> futures;
    for (int i = 0; i < 60; ++i) {
        futures.append(first.image(photo(i), 720));
        futures.append(other->image(photo(i), 720));
    }
    for (QFuture<QImage> &future : futures) {
        QTRY_VERIFY_WITH_TIMEOUT(future.isFinished(), 60'000);
        QCOMPARE(future.result().size(), QSize(72, 48));
    }
    QVERIFY(first.finish(30s) && other->finish(30s));
    const QDir directory(m_folder->path() + QStringLiteral("/Mosa/Thumbnails"));
    QCOMPARE(directory.entryList(QDir::Files | QDir::Hidden).size(), 60);
}

void ThumbnailServiceTest::worksWithoutADirectory() {
    QFile inTheWay(m_folder->filePath(QStringLiteral("Mosa")));
    QVERIFY(inTheWay.open(QIODevice::WriteOnly));
    QFuture<QImage> future = service().image(photo(1), 720);
    QTRY_VERIFY_WITH_TIMEOUT(future.isFinished(), 30'000);
    QVERIFY(!future.result().isNull());
}

QTEST_GUILESS_MAIN(ThumbnailServiceTest)
#include "ThumbnailServiceTest.moc"
