#include <QSignalSpy>
#include <QTest>

#include "AppStateFixture.h"

class AppStateNavigationTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void choosesATab_data();
    void choosesATab();
    void showsTheScanAndResetsTheRest();
    void keepsTheOldFolderWhileScanning();
    void opensTheFolderOfAFile_data();
    void opensTheFolderOfAFile();
    void supersedesAScan();
    void aHungFolderBlocksNoOther();
    void reportsAFailedScan();
    void goesBack();
    void goesBackDuringAScan();
    void choosesAFolder();
    void endsDuringAScan();
};

void AppStateNavigationTest::choosesATab_data() {
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

void AppStateNavigationTest::choosesATab() {
    QFETCH(MediaKind, before);
    QFETCH(int, videos);
    QFETCH(int, photos);
    AppStateFixture fixture;
    fixture.state->setActiveTab(before);
    QVERIFY(fixture.show(scanResult("/f", videos, photos)));
    QTEST(fixture.state->activeTab(), "after");
    QCOMPARE(fixture.preferences.values.value(QStringLiteral("MosaLastFolder")), QStringLiteral("/f"));
}

void AppStateNavigationTest::showsTheScanAndResetsTheRest() {
    AppStateFixture fixture;
    AppState &state = *fixture.state;
    QVERIFY(fixture.show(scanResult("/a", 4, 4)));
    state.toggleFlag(state.videos()[0]);
    state.hideVideo(state.videos()[1]);
    state.setViewFlaggedOnly(true);
    state.openFullItem(state.videos()[0]);
    state.setPage(3);

    ScanResult next = scanResult("/b", 1, 2);
    next.folders = {{FileURL::directory("/b/c"), QStringLiteral("c"), 9, std::nullopt}};
    QVERIFY(fixture.show(next));
    QCOMPARE(state.videos(), next.videos);
    QCOMPARE(state.photos(), next.photos);
    QCOMPARE(state.folders(), next.folders);
    QCOMPARE(state.flagCount(), 0);
    QCOMPARE(state.hiddenVideoCount(), 0);
    QVERIFY(!state.viewFlaggedOnly());
    QVERIFY(!state.fullItem());
    QCOMPARE(state.page(), 0);
    QVERIFY(!state.statusMessage());
    QVERIFY(!state.errorMessage());
}

void AppStateNavigationTest::keepsTheOldFolderWhileScanning() {
    AppStateFixture fixture;
    AppState &state = *fixture.state;
    QVERIFY(fixture.show(scanResult("/a", 2, 0)));
    QVERIFY(!state.canNavigateBack());
    const QSignalSpy historySpy(&state, &AppState::historyChanged);
    state.openFolder(FileURL::directory("/x/na %1 me"), true);
    QVERIFY(state.isScanning());
    QCOMPARE(state.statusMessage(), QStringLiteral("Scanning na %1 me\u2026"));
    QCOMPARE(state.folder(), FileURL::directory("/a"));
    QCOMPARE(state.videos().size(), 2);
    QVERIFY(state.canNavigateBack());
    QCOMPARE(historySpy.size(), 1);
}

void AppStateNavigationTest::opensTheFolderOfAFile_data() {
    QTest::addColumn<bool>("isDirectory");
    QTest::addColumn<bool>("readFails");
    QTest::addColumn<QByteArray>("scanned");
    QTest::addColumn<QString>("status");

    const QString parent = QStringLiteral("Scanning a\u2026");
    QTest::newRow("folder") << true << false << QByteArray("/a/b") << QStringLiteral("Scanning b\u2026");
    QTest::newRow("file") << false << false << QByteArray("/a") << parent;
    QTest::newRow("unreadable") << false << true << QByteArray("/a") << parent;
}

void AppStateNavigationTest::opensTheFolderOfAFile() {
    QFETCH(bool, isDirectory);
    QFETCH(bool, readFails);
    QFETCH(QByteArray, scanned);
    AppStateFixture fixture;
    AppState &state = *fixture.state;
    QVERIFY(fixture.show(scanResult("/start", 1, 1)));
    state.openFolder(FileURL::fromNativePath("/a/b"), true);
    QCOMPARE(state.statusMessage(), QStringLiteral("Scanning b\u2026"));
    if (readFails) {
        fixture.directoryTests.back().fail(ScanFailure("no"));
    } else {
        fixture.directoryTests.back().answer(isDirectory);
    }
    QTRY_COMPARE(fixture.scans.size(), 2);
    QCOMPARE(fixture.scans.back().url.nativePath(), scanned);
    QTEST(state.statusMessage().value_or(QString()), "status");
    fixture.scans.back().answer(scanResult(scanned, 1, 0));
    QTRY_COMPARE(state.folder(), FileURL::directory(scanned));
    // One opening is one step back, however often it was re-targeted.
    state.navigateBack();
    QCOMPARE(state.folder(), FileURL::directory("/start"));
    QVERIFY(!state.canNavigateBack());
}

void AppStateNavigationTest::supersedesAScan() {
    AppStateFixture fixture;
    AppState &state = *fixture.state;
    QVERIFY(fixture.show(scanResult("/start", 1, 1)));
    const QSignalSpy folderSpy(&state, &AppState::folderChanged);
    state.openFolder(FileURL::directory("/a"), true);
    state.openFolder(FileURL::directory("/b"), true);
    QVERIFY(fixture.scans[1].isCancelled());
    fixture.scans[1].answer(scanResult("/a", 3, 0));
    QTest::qWait(20);
    QVERIFY(state.isScanning());
    QCOMPARE(state.statusMessage(), QStringLiteral("Scanning b\u2026"));
    fixture.scans[2].answer(scanResult("/b", 2, 0));
    QTRY_VERIFY(!state.isScanning());
    QCOMPARE(state.folder(), FileURL::directory("/b"));
    QCOMPARE(folderSpy.size(), 1);
    state.navigateBack();
    state.navigateBack();
    QCOMPARE(state.folder(), FileURL::directory("/start"));
    QVERIFY(!state.canNavigateBack());
}

void AppStateNavigationTest::aHungFolderBlocksNoOther() {
    AppStateFixture fixture;
    AppState &state = *fixture.state;
    state.openFolder(FileURL::fromNativePath("/hung/a"), true);
    state.openFolder(FileURL::fromNativePath("/b"), true);
    fixture.directoryTests[1].answer(true);
    QTRY_COMPARE(fixture.scans.size(), 1);
    fixture.scans[0].answer(scanResult("/b", 1, 0));
    QTRY_COMPARE(state.folder(), FileURL::directory("/b"));
    // The old answer comes after all, and starts nothing.
    fixture.directoryTests[0].answer(true);
    QTest::qWait(20);
    QCOMPARE(fixture.scans.size(), 1);
    QVERIFY(!state.isScanning());
}

void AppStateNavigationTest::reportsAFailedScan() {
    AppStateFixture fixture;
    AppState &state = *fixture.state;
    QVERIFY(fixture.show(scanResult("/a", 1, 1)));
    state.openFolder(FileURL::directory("/b"), true);
    fixture.scans.back().fail(ScanFailure("The folder “b” could not be read."));
    QTRY_VERIFY(!state.isScanning());
    QCOMPARE(state.errorMessage(), QStringLiteral("The folder “b” could not be read."));
    QVERIFY(!state.statusMessage());
    QCOMPARE(state.folder(), FileURL::directory("/a"));
    QCOMPARE(fixture.preferences.values.value(QStringLiteral("MosaLastFolder")), QStringLiteral("/a"));
    // The step back that the failed opening left leads to the folder that still shows.
    QVERIFY(state.canNavigateBack());
    state.navigateBack();
    QCOMPARE(state.folder(), FileURL::directory("/a"));
    QVERIFY(!state.errorMessage());
}

void AppStateNavigationTest::goesBack() {
    AppStateFixture fixture;
    AppState &state = *fixture.state;
    state.navigateBack();
    QVERIFY(fixture.preferences.values.isEmpty());

    QVERIFY(fixture.show(scanResult("/a", 4, 4)));
    state.moveVideo(0, 4);
    const QList<MediaFile> order = state.videos();
    state.setActiveTab(MediaKind::photo);
    state.toggleFlag(state.photos()[1]);
    state.hideVideo(state.videos()[0]);
    state.setPage(2);
    const QSet<QString> flags = state.flags();
    const QSet<QString> hidden = state.hiddenVideos();

    QVERIFY(fixture.show(scanResult("/b", 1, 0)));
    state.setViewFlaggedOnly(true);
    state.openFullItem(state.videos()[0]);
    state.navigateBack();
    QCOMPARE(state.folder(), FileURL::directory("/a"));
    QCOMPARE(state.videos(), order);
    QCOMPARE(state.activeTab(), MediaKind::photo);
    QCOMPARE(state.page(), 2);
    QCOMPARE(state.flags(), flags);
    QCOMPARE(state.hiddenVideos(), hidden);
    QVERIFY(!state.viewFlaggedOnly());
    QVERIFY(!state.fullItem());
    QCOMPARE(fixture.preferences.values.value(QStringLiteral("MosaLastFolder")), QStringLiteral("/a"));
}

void AppStateNavigationTest::goesBackDuringAScan() {
    AppStateFixture fixture;
    AppState &state = *fixture.state;
    QVERIFY(fixture.show(scanResult("/a", 1, 1)));
    state.openFolder(FileURL::directory("/b"), true);
    state.navigateBack();
    QVERIFY(!state.isScanning());
    QVERIFY(!state.statusMessage());
    QVERIFY(fixture.scans.back().isCancelled());
    fixture.scans.back().answer(scanResult("/b", 5, 0));
    QTest::qWait(20);
    QCOMPARE(state.folder(), FileURL::directory("/a"));
    QCOMPARE(state.videos().size(), 1);
}

void AppStateNavigationTest::choosesAFolder() {
    AppStateFixture fixture;
    AppState &state = *fixture.state;
    state.chooseFolder();
    state.chooseFolder();
    QCOMPARE(fixture.chooser.shown.size(), 1);
    QCOMPARE(fixture.chooser.shown[0].title, QStringLiteral("Open a folder in Mosa"));
    QCOMPARE(fixture.chooser.shown[0].prompt, QStringLiteral("Open"));
    fixture.chooser.shown[0].answer(std::nullopt);
    // Once the answer has arrived, the chooser can be shown anew.
    QTRY_VERIFY((state.chooseFolder(), fixture.chooser.shown.size() == 2));
    QVERIFY(!state.isScanning());
    fixture.chooser.shown[1].answer(FileURL::directory("/c"));
    QTRY_COMPARE(fixture.scans.size(), 1);
    QCOMPARE(fixture.scans[0].url, FileURL::directory("/c"));
}

void AppStateNavigationTest::endsDuringAScan() {
    AppStateFixture fixture;
    fixture.state->openFolder(FileURL::directory("/a"), true);
    fixture.state.reset();
    QVERIFY(fixture.scans[0].isCancelled());
    fixture.scans[0].answer(scanResult("/a", 1, 1));
    QTest::qWait(20);
}

QTEST_GUILESS_MAIN(AppStateNavigationTest)
#include "AppStateNavigationTest.moc"
