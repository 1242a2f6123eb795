#include <QMimeData>
#include <QTest>

#include "../state/AppStateFixture.h"
#include "FolderDropTarget.h"
#include "FolderOpener.h"
#include "NotificationCentre.h"
#include "NotificationNames.h"

// The ways into a folder besides the chooser: a drop, an announcement.
class FolderWaysTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void takesTheFirstDroppedFile_data();
    void takesTheFirstDroppedFile();
    void opensAnnouncedFolders();
};

void FolderWaysTest::takesTheFirstDroppedFile_data() {
    QTest::addColumn<QByteArray>("list");
    QTest::addColumn<QByteArray>("path");

    QTest::newRow("one") << QByteArray("file:///a/b\r\n") << QByteArray("/a/b");
    QTest::newRow("first of three") << QByteArray(
                                           "# from elsewhere\r\nfile:///a\r\nfile:///b\r\nfile:///c\r\n")
                                    << QByteArray("/a");
    QTest::newRow("bytes that are not UTF-8") << QByteArray("file:///caf%E9") << QByteArray("/caf\xE9");
    QTest::newRow("line break in the name") << QByteArray("file:///a%0Ab\r\n") << QByteArray("/a\nb");
    QTest::newRow("with host") << QByteArray("file://localhost/a") << QByteArray("/a");
    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("elsewhere") << QByteArray("https://example.org/a\r\nfile:///b\r\n") << QByteArray();
}

void FolderWaysTest::takesTheFirstDroppedFile() {
    QFETCH(QByteArray, list);
    QMimeData data;
    data.setData(QStringLiteral("text/uri-list"), list);
    const std::optional<FileURL> url = FolderDropTarget::firstFile(data);
    QTEST(url ? url->nativePath() : QByteArray(), "path");
}

void FolderWaysTest::opensAnnouncedFolders() {
    AppStateFixture fixture;
    FolderOpener opener;
    opener.setState(fixture.state.get());
    NotificationCentre &centre = NotificationCentre::defaultCentre();
    centre.post(NotificationNames::mosaOpenFolder);
    centre.post(NotificationNames::mosaOpenFolder, QStringLiteral("/f"));
    centre.post(NotificationNames::mosaTogglePlayback, QVariant::fromValue(FileURL::directory("/f")));
    QVERIFY(fixture.scans.empty());
    centre.post(NotificationNames::mosaOpenFolder, QVariant::fromValue(FileURL::directory("/f")));
    QCOMPARE(fixture.scans.size(), size_t(1));
    QCOMPARE(fixture.scans[0].url, FileURL::directory("/f"));
}

QTEST_MAIN(FolderWaysTest)
#include "FolderWaysTest.moc"
