#include <QSignalSpy>
#include <QTest>

#include "AppStateFixture.h"
#include "FileSystemError.h"

using namespace Qt::StringLiterals;

class AppStateNavigationTest : public QObject {
    Q_OBJECT

    std::unique_ptr<AppStateFixture> m_fixture;
    AppState *m_state = nullptr;

    QString lastFolder() const { return m_fixture->preferences.values.value(u"MosaLastFolder"_s); }
    bool shows(const QByteArray &folder) const { return m_state->folder() == FileURL::directory(folder); }
    Call<ScanResult> &scan(size_t index) { return m_fixture->scans[index]; }

private Q_SLOTS:
    void init() {
        m_fixture = std::make_unique<AppStateFixture>();
        m_state = m_fixture->state.get();
    }

    void choosesATab_data() {
        QTest::addColumn<MediaKind>("before");
        QTest::addColumn<int>("videos");
        QTest::addColumn<int>("photos");
        QTest::addColumn<MediaKind>("after");
        QTest::newRow("only photos") << MediaKind::video << 0 << 2 << MediaKind::photo;
        QTest::newRow("only videos") << MediaKind::photo << 2 << 0 << MediaKind::video;
        QTest::newRow("both, photos before") << MediaKind::photo << 2 << 2 << MediaKind::photo;
        QTest::newRow("both, videos before") << MediaKind::video << 2 << 2 << MediaKind::video;
        QTest::newRow("neither") << MediaKind::photo << 0 << 0 << MediaKind::photo;
    }

    void choosesATab() {
        QFETCH(MediaKind, before);
        QFETCH(int, videos);
        QFETCH(int, photos);
        m_state->setActiveTab(before);
        QVERIFY(m_fixture->show(scanResult("/f", videos, photos)));
        QTEST(m_state->activeTab(), "after");
        QCOMPARE(lastFolder(), "/f"_L1);
    }

    void showsTheScanAndResetsTheRest() {
        QVERIFY(m_fixture->show(scanResult("/a", 4, 4)));
        m_state->toggleFlag(m_state->videos()[0]);
        m_state->hideVideo(m_state->videos()[1]);
        m_state->setViewFlaggedOnly(true);
        m_state->openFullItem(m_state->videos()[0]);
        m_state->setPage(3);

        ScanResult next = scanResult("/b", 1, 2);
        next.folders = {{FileURL::directory("/b/c"), u"c"_s, 9, std::nullopt}};
        QVERIFY(m_fixture->show(next));
        QCOMPARE(m_state->videos(), next.videos);
        QCOMPARE(m_state->photos(), next.photos);
        QCOMPARE(m_state->folders(), next.folders);
        QCOMPARE(m_state->flagCount() + m_state->hiddenVideoCount() + m_state->page(), 0);
        QVERIFY(!m_state->viewFlaggedOnly() && !m_state->fullItem());
        QVERIFY(!m_state->statusMessage() && !m_state->errorMessage());
    }

    void opensTheFolderOfAFile_data() {
        // None: it cannot be told.
        QTest::addColumn<std::optional<bool>>("isDirectory");
        QTest::addColumn<QByteArray>("scanned");
        QTest::newRow("folder") << std::optional(true) << "/a/b"_ba;
        QTest::newRow("file") << std::optional(false) << "/a"_ba;
        QTest::newRow("unreadable") << std::optional<bool>() << "/a"_ba;
    }

    void opensTheFolderOfAFile() {
        QFETCH(std::optional<bool>, isDirectory);
        QFETCH(QByteArray, scanned);
        QVERIFY(m_fixture->show(scanResult("/start", 1, 1)));
        m_state->openFolder(FileURL::fromNativePath("/a/b"), true);
        QCOMPARE(m_state->statusMessage(), u"Scanning b\u2026"_s);
        if (isDirectory) {
            m_fixture->directoryTests.back().answer(*isDirectory);
        } else {
            m_fixture->directoryTests.back().fail(FileSystemError({}, EIO));
        }
        QTRY_COMPARE(m_fixture->scans.size(), 2);
        QCOMPARE(scan(1).url.nativePath(), scanned);
        QCOMPARE(m_state->statusMessage(), u"Scanning %1\u2026"_s.arg(QLatin1Char(scanned.back())));
        scan(1).answer(scanResult(scanned, 1, 0));
        QTRY_VERIFY(shows(scanned));
        // One opening is one step back, however often it was re-targeted.
        m_state->navigateBack();
        QVERIFY(shows("/start"));
        QVERIFY(!m_state->canNavigateBack());
    }

    void supersedesAScan() {
        QVERIFY(m_fixture->show(scanResult("/start", 1, 1)));
        const QSignalSpy folderSpy(m_state, &AppState::folderChanged);
        m_state->openFolder(FileURL::directory("/a"), true);
        m_state->openFolder(FileURL::directory("/b"), true);
        QVERIFY(scan(1).isCancelled());
        scan(1).answer(scanResult("/a", 3, 0));
        QTest::qWait(20);
        QVERIFY(m_state->isScanning());
        QCOMPARE(m_state->statusMessage(), u"Scanning b\u2026"_s);
        scan(2).answer(scanResult("/b", 2, 0));
        QTRY_VERIFY(!m_state->isScanning());
        QVERIFY(shows("/b"));
        QCOMPARE(folderSpy.size(), 1);
        m_state->navigateBack();
        m_state->navigateBack();
        QVERIFY(shows("/start"));
        QVERIFY(!m_state->canNavigateBack());
    }

    void aHungFolderBlocksNoOther() {
        m_state->openFolder(FileURL::fromNativePath("/hung/a"), true);
        m_state->openFolder(FileURL::fromNativePath("/b"), true);
        m_fixture->directoryTests[1].answer(true);
        QTRY_COMPARE(m_fixture->scans.size(), 1);
        scan(0).answer(scanResult("/b", 1, 0));
        QTRY_VERIFY(shows("/b"));
        // The old answer comes after all, and starts nothing.
        m_fixture->directoryTests[0].answer(true);
        QTest::qWait(20);
        QCOMPARE(m_fixture->scans.size(), 1);
        QVERIFY(!m_state->isScanning());
    }

    void reportsAFailedScan() {
        QVERIFY(m_fixture->show(scanResult("/a", 1, 1)));
        m_state->openFolder(FileURL::directory("/b"), true);
        const FileSystemError error(FileURL::directory("/b"), EACCES);
        scan(1).fail(error);
        QTRY_VERIFY(!m_state->isScanning());
        QCOMPARE(m_state->errorMessage(), error.message());
        QVERIFY(!m_state->statusMessage());
        QVERIFY(shows("/a"));
        QCOMPARE(lastFolder(), "/a"_L1);
        // The step back that the failed opening left leads to the folder that still shows.
        QVERIFY(m_state->canNavigateBack());
        m_state->navigateBack();
        QVERIFY(shows("/a"));
        QVERIFY(!m_state->errorMessage());
    }

    void goesBack() {
        m_state->navigateBack();
        QVERIFY(m_fixture->preferences.values.isEmpty());

        QVERIFY(m_fixture->show(scanResult("/a", 4, 4)));
        m_state->moveVideo(0, 4);
        const QList<MediaFile> order = m_state->videos();
        m_state->setActiveTab(MediaKind::photo);
        m_state->toggleFlag(m_state->photos()[1]);
        m_state->hideVideo(m_state->videos()[0]);
        m_state->setPage(2);
        const QSet<FileURL> flags = m_state->flags();
        const QSet<FileURL> hidden = m_state->hiddenVideos();

        QVERIFY(m_fixture->show(scanResult("/b", 1, 0)));
        m_state->setViewFlaggedOnly(true);
        m_state->openFullItem(m_state->videos()[0]);
        m_state->navigateBack();
        QVERIFY(shows("/a"));
        QCOMPARE(m_state->videos(), order);
        QCOMPARE(m_state->activeTab(), MediaKind::photo);
        QCOMPARE(m_state->page(), 2);
        QCOMPARE(m_state->flags(), flags);
        QCOMPARE(m_state->hiddenVideos(), hidden);
        QVERIFY(!m_state->viewFlaggedOnly() && !m_state->fullItem());
        QCOMPARE(lastFolder(), "/a"_L1);
    }

    void goesBackDuringAScan() {
        QVERIFY(m_fixture->show(scanResult("/a", 1, 1)));
        m_state->openFolder(FileURL::directory("/b"), true);
        m_state->navigateBack();
        QVERIFY(!m_state->isScanning() && !m_state->statusMessage());
        QVERIFY(scan(1).isCancelled());
        scan(1).answer(scanResult("/b", 5, 0));
        QTest::qWait(20);
        QVERIFY(shows("/a"));
        QCOMPARE(m_state->videos().size(), 1);
    }

    void choosesAFolder() {
        auto &shown = m_fixture->chooser.shown;
        m_state->chooseFolder();
        m_state->chooseFolder();
        QCOMPARE(shown.size(), 1);
        QCOMPARE(shown[0].title, "Open a folder in Mosa"_L1);
        QCOMPARE(shown[0].prompt, "Open"_L1);
        shown[0].answer(std::nullopt);
        // Once the answer has arrived, the chooser can be shown anew.
        QTRY_VERIFY((m_state->chooseFolder(), shown.size() == 2));
        QVERIFY(!m_state->isScanning());
        shown[1].answer(FileURL::directory("/c"));
        QTRY_COMPARE(m_fixture->scans.size(), 1);
        QCOMPARE(scan(0).url, FileURL::directory("/c"));
    }

    void endsDuringAScan() {
        m_state->openFolder(FileURL::directory("/a"), true);
        m_fixture->state.reset();
        QVERIFY(scan(0).isCancelled());
        scan(0).answer(scanResult("/a", 1, 1));
        QTest::qWait(20);
    }
};

QTEST_GUILESS_MAIN(AppStateNavigationTest)
#include "AppStateNavigationTest.moc"
