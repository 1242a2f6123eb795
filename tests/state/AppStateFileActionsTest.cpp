#include <QSignalSpy>
#include <QTest>

#include "AppStateFixture.h"

#include <thread>

using namespace Qt::StringLiterals;

namespace {

QList<FileURL> urls(const QList<MediaFile> &files) {
    QList<FileURL> urls;
    for (const MediaFile &file : files) {
        urls.append(file.url);
    }
    return urls;
}

} // namespace

class AppStateFileActionsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<AppStateFixture> m_fixture;
    AppState *m_state = nullptr;

    /// What is flagged: the first videos.
    QList<FileURL> flag(int count) {
        for (int i = 0; i < count; ++i) {
            m_state->toggleFlag(m_state->videos()[i]);
        }
        return urls(m_state->flaggedItems());
    }

    bool asks(size_t count = 1) const {
        return QTest::qWaitFor(
            [&] { return m_fixture->alerts.shown.size() + m_fixture->chooser.shown.size() == count; });
    }

    bool startsTrash() {
        m_state->trashFlagged();
        if (!asks()) {
            return false;
        }
        m_fixture->alerts.shown.back().answer(0);
        return QTest::qWaitFor([this] { return m_fixture->trashes.size() == 1; });
    }

private Q_SLOTS:
    void init() {
        m_fixture = std::make_unique<AppStateFixture>();
        m_state = m_fixture->state.get();
        QVERIFY(m_fixture->show(scanResult("/f", 6, 6)));
    }

    void asksNothingWithoutFlags() {
        m_state->trashFlagged();
        m_state->copyFlagged();
        m_state->moveFlagged();
        m_state->setFlagged({u"/gone.jpg"_s}, true);
        m_state->trashFlagged();
        QTest::qWait(20);
        QVERIFY(asks(0));
    }

    void trashes_data() {
        QTest::addColumn<int>("flagged");
        QTest::addColumn<int>("trashed");
        QTest::addColumn<QString>("question");
        QTest::addColumn<QString>("status");
        const auto row = [](int flagged, int trashed, const char *question, const char *status) {
            QTest::addRow("%d of %d", trashed, flagged) << flagged << trashed << question << status;
        };
        row(1, 1, "Move 1 item to Trash?", "Moved 1 item to Trash");
        row(5, 4, "Move 5 items to Trash?", "Moved 4 items to Trash");
        row(2, 0, "Move 2 items to Trash?", "Moved 0 items to Trash");
    }

    void trashes() {
        QFETCH(int, flagged);
        QFETCH(int, trashed);
        const QList<FileURL> files = flag(flagged);
        m_state->setPage(1);
        m_state->trashFlagged();
        m_state->copyFlagged();
        QVERIFY(asks());
        m_state->trashFlagged();
        auto &shown = m_fixture->alerts.shown[0];
        QTEST(shown.alert.messageText, "question");
        QCOMPARE(shown.alert.informativeText, "The files can be recovered from the Trash."_L1);
        QCOMPARE(shown.alert.buttons, (QStringList{u"Move to Trash"_s, u"Cancel"_s}));
        QVERIFY(!m_state->operationProgress());
        shown.answer(0);
        QTRY_COMPARE(m_fixture->trashes.size(), 1);
        QCOMPARE(m_state->operationProgress(), 0.0);
        QCOMPARE(m_fixture->trashes[0].files, files);
        m_fixture->trashes[0].answer(files.first(trashed));
        QTRY_VERIFY(!m_state->operationProgress());
        QTEST(m_state->statusMessage().value_or(QString()), "status");
        QVERIFY(!m_state->errorMessage());
        QCOMPARE(m_state->videos().size(), 6 - trashed);
        QCOMPARE(m_state->flagCount(), flagged - trashed);
        QCOMPARE(m_state->page(), 0);
    }

    void cancelledQuestionsChangeNothing() {
        flag(1);
        m_state->trashFlagged();
        QVERIFY(asks());
        m_fixture->alerts.shown[0].answer(1);
        QTRY_VERIFY((m_state->copyFlagged(), m_fixture->chooser.shown.size() == 1));
        m_fixture->chooser.shown[0].answer(std::nullopt);
        QTRY_VERIFY((m_state->moveFlagged(), m_fixture->chooser.shown.size() == 2));
        // The window went away with the question.
        m_fixture->chooser.shown[1].promise->future().cancel();
        m_fixture->chooser.shown[1].promise->finish();
        QTRY_VERIFY((m_state->trashFlagged(), m_fixture->alerts.shown.size() == 2));
        QVERIFY(m_fixture->trashes.empty() && m_fixture->transfers.empty());
        QVERIFY(!m_state->operationProgress());
        QVERIFY(!m_state->statusMessage());
    }

    void transfers_data() {
        QTest::addColumn<bool>("copies");
        QTest::addColumn<int>("done");
        QTest::addColumn<int>("failed");
        QTest::addColumn<QString>("status");
        QTest::addColumn<QString>("error");
        QTest::newRow("copy") << true << 4 << 0 << "Copied 4 items" << QString();
        QTest::newRow("copy one") << true << 1 << 0 << "Copied 1 item" << QString();
        QTest::newRow("copies fail") << true << 0 << 2 << "Copied 0 items"
                                     << "2 files could not be copied.";
        QTest::newRow("move") << false << 1 << 0 << "Moved 1 item" << QString();
        QTest::newRow("a move fails") << false << 2 << 1 << "Moved 2 items"
                                      << "1 file could not be moved.";
    }

    void transfers() {
        QFETCH(bool, copies);
        QFETCH(int, done);
        QFETCH(int, failed);
        const QList<FileURL> files = flag(done + failed);
        copies ? m_state->copyFlagged() : m_state->moveFlagged();
        QVERIFY(asks());
        auto &shown = m_fixture->chooser.shown.back();
        QCOMPARE(shown.title, copies ? "Copy flagged files to"_L1 : "Move flagged files to"_L1);
        QCOMPARE(shown.prompt, copies ? "Copy Here"_L1 : "Move Here"_L1);
        shown.answer(FileURL::directory("/to"));
        QTRY_COMPARE(m_fixture->transfers.size(), 1);
        auto &transfer = m_fixture->transfers[0];
        QCOMPARE(transfer.sources, files);
        QCOMPARE(transfer.url, FileURL::directory("/to"));
        QCOMPARE(transfer.kind == FileOperationKind::copy, copies);
        QCOMPARE(m_state->operationProgress(), 0.0);
        QCOMPARE(m_state->statusMessage(), copies ? u"Copying\u2026"_s : u"Moving\u2026"_s);
        transfer.answer({.sources = files.first(done), .destinations = {}, .failures = files.last(failed)});
        QTRY_VERIFY(!m_state->operationProgress());
        QTEST(m_state->statusMessage().value_or(QString()), "status");
        QTEST(m_state->errorMessage().value_or(QString()), "error");
        QCOMPARE(m_state->videos().size(), copies ? 6 : 6 - done);
        QCOMPARE(m_state->flagCount(), copies ? done + failed : failed);
    }

    void forgetsOnlyWhatMoved() {
        m_state->hideVideo(m_state->videos()[0]);
        m_state->setFlagged({u"/f/v0.mp4"_s, u"/f/p2.jpg"_s, u"/f/p3.jpg"_s}, true);
        m_state->openFullItem(m_state->photos()[2]);
        const QList<FileURL> files = urls(m_state->flaggedItems());
        m_state->moveFlagged();
        QVERIFY(asks());
        m_fixture->chooser.shown.back().answer(FileURL::directory("/to"));
        QTRY_COMPARE(m_fixture->transfers.size(), 1);
        m_fixture->transfers[0].answer(
            {.sources = files.first(2), .destinations = {}, .failures = files.last(1)});
        // The user goes on while the files are being forgotten.
        for (int i = 0; i < 21; ++i) {
            m_state->toggleFlag(m_state->videos().last());
            QCoreApplication::processEvents();
        }
        QTRY_VERIFY(!m_state->operationProgress());
        QCOMPARE(m_state->videos().size(), 5);
        QCOMPARE(m_state->photos().size(), 5);
        QCOMPARE(m_state->hiddenVideoCount(), 0);
        QCOMPARE(m_state->flags(),
                 (QSet<FileURL>{FileURL::fromNativePath("/f/p3.jpg"), FileURL::fromNativePath("/f/v5.mp4")}));
        QVERIFY(m_state->fullItem());
    }

    void reportsProgressFromAnotherThread() {
        flag(4);
        QVERIFY(startsTrash());
        const auto progress = m_fixture->trashes[0].progress;
        for (int done = 1; done <= 4; ++done) {
            std::thread([&] { progress(done, 4); }).join();
            QTRY_COMPARE(m_state->operationProgress(), double(done) / 4);
        }
        // Thousands of reports at once cost a few updates and end at the last.
        const QSignalSpy updates(m_state, &AppState::operationProgressChanged);
        std::thread([&] {
            for (int done = 1; done <= 10'000; ++done) {
                progress(done, 20'000);
            }
        }).join();
        QTRY_COMPARE(m_state->operationProgress(), 0.5);
        QVERIFY(updates.size() <= 2);
        // None comes after the end, though its update was on its way.
        std::thread([&] { progress(3, 4); }).join();
        m_fixture->trashes[0].answer({});
        QTRY_VERIFY(!m_state->operationProgress());
        QTest::qWait(50);
        QVERIFY(!m_state->operationProgress());
    }

    void outlivedByItsBatch() {
        flag(1);
        QVERIFY(startsTrash());
        m_fixture->state.reset();
        QVERIFY(m_fixture->trashes.front().isCancelled());
        std::thread([trash = std::exchange(m_fixture->trashes, {}).front()]() mutable {
            trash.progress(1, 1);
            trash.answer(trash.files);
        }).join();
        QTest::qWait(20);
    }
};

QTEST_GUILESS_MAIN(AppStateFileActionsTest)
#include "AppStateFileActionsTest.moc"
