#include "DesktopFileManager.h"

#include "MediaMaker.h"
#include "StandInService.h"
#include "TemporaryFolder.h"

#include <QDBusUnixFileDescriptor>
#include <QTest>
#include <QUrl>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class DesktopFileManagerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void showsInFileManager_data() {
        QTest::addColumn<bool>("refuses");
        QTest::addColumn<QStringList>("opened");
        QTest::newRow("file manager") << false << QStringList();
        QTest::newRow("refusing one") << true << QStringList{u"file:///a%20b"_s};
    }

    void showsInFileManager() {
        QFETCH(bool, refuses);
        QFETCH(QStringList, opened);
        PrivateBus bus;
        StandInService service(
            bus.connect(), u"org.freedesktop.FileManager1"_s, [refuses](const QDBusMessage &call) {
                return refuses ? call.createErrorReply(QDBusError::Failed, u"no"_s) : call.createReply();
            });
        QStringList openedNow;
        DesktopFileManager manager(
            bus.connect(), [&](const QString &uri) { openedNow.append(uri); }, false);
        manager.showInFileManager(FileURL::fromNativePath("/a b/c\xFF.jpg"));
        QTRY_COMPARE_WITH_TIMEOUT(service.members(), QStringList{u"ShowItems"_s}, PrivateBus::patience);
        QCOMPARE(service.calls[0].arguments()[0].toStringList(), QStringList{u"file:///a%20b/c%FF.jpg"_s});
        QTRY_COMPARE_WITH_TIMEOUT(openedNow, opened, PrivateBus::patience);
    }

    void opensThroughOpener() {
        QStringList opened;
        DesktopFileManager manager(
            QDBusConnection(u"nothing"_s), [&](const QString &uri) { opened.append(uri); }, true);
        manager.openInDefaultApp(FileURL::fromNativePath("/a#b?.mp4"));
        manager.showInFileManager(FileURL::fromNativePath("/x/y"));
        QCOMPARE(opened, QStringList({u"file:///a%23b%3F.mp4"_s, u"file:///x"_s}));
    }

    /// In a sandbox the portal gets the file itself, since its path may mean nothing outside.
    void opensThroughPortal() {
        PrivateBus bus;
        StandInService portal(bus.connect(), u"org.freedesktop.portal.Desktop"_s,
                              [](const QDBusMessage &call) { return call.createReply(); });
        const TemporaryFolder folder;
        const FileURL file = folder.at("a\xFF.jpg");
        QVERIFY(MediaMaker::write(file, "x"));
        DesktopFileManager manager(
            bus.connect(), [](const QString &) { QFAIL("opened outside the sandbox"); }, true);
        const std::pair<FileURL, QString> files[] = {{file, u"OpenFile"_s},
                                                     {folder.url(), u"OpenDirectory"_s}};
        for (const auto &[url, member] : files) {
            portal.calls.clear();
            manager.openInDefaultApp(url);
            QTRY_COMPARE_WITH_TIMEOUT(portal.members(), QStringList{member}, PrivateBus::patience);
            const auto opened = portal.calls[0].arguments()[1].value<QDBusUnixFileDescriptor>();
            struct stat status {};
            struct stat expected {};
            QVERIFY(::fstat(opened.fileDescriptor(), &status) == 0 &&
                    ::stat(url.nativePath().constData(), &expected) == 0);
            QCOMPARE(status.st_ino, expected.st_ino);
        }
        manager.openUrl(QUrl(u"https://a.b/c"_s));
        QTRY_COMPARE_WITH_TIMEOUT(portal.members().last(), u"OpenURI"_s, PrivateBus::patience);
        QCOMPARE(portal.calls.last().arguments()[1].toString(), u"https://a.b/c"_s);
    }
};

QTEST_GUILESS_MAIN(DesktopFileManagerTest)
#include "DesktopFileManagerTest.moc"
