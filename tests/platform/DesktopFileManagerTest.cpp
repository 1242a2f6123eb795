#include "DesktopFileManager.h"

#include "PrivateBus.h"

#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QTest>
#include <QUrl>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int limit = 30000;

/// Stands in for the desktop's file manager.
class StandInFileManager : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.FileManager1")

public:
    explicit StandInFileManager(QDBusConnection bus) {
        bus.registerObject(u"/org/freedesktop/FileManager1"_s, this, QDBusConnection::ExportAllSlots);
        bus.registerService(u"org.freedesktop.FileManager1"_s);
    }
    bool refuses = false;
    QStringList shown;

public Q_SLOTS:
    void ShowItems(const QStringList &uris, const QString &) {
        if (refuses) {
            sendErrorReply(QDBusError::Failed, u"no"_s);
        } else {
            shown = uris;
        }
    }
};

/// Stands in for the portal that opens files for sandboxed programs.
class StandInOpener : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.OpenURI")

public:
    explicit StandInOpener(QDBusConnection bus) {
        bus.registerObject(u"/org/freedesktop/portal/desktop"_s, this, QDBusConnection::ExportAllSlots);
        bus.registerService(u"org.freedesktop.portal.Desktop"_s);
    }
    QStringList opened;

public Q_SLOTS:
    void OpenURI(const QString &, const QString &uri, const QVariantMap &) { opened.append(uri); }
    void OpenFile(const QString &, const QDBusUnixFileDescriptor &file, const QVariantMap &) {
        opened.append(u"file %1"_s.arg(identity(file)));
    }
    void OpenDirectory(const QString &, const QDBusUnixFileDescriptor &file, const QVariantMap &) {
        opened.append(u"directory %1"_s.arg(identity(file)));
    }

private:
    static quint64 identity(const QDBusUnixFileDescriptor &file) {
        struct stat status {};
        return ::fstat(file.fileDescriptor(), &status) == 0 ? status.st_ino : 0;
    }
};

quint64 inode(const QByteArray &path) {
    struct stat status {};
    return ::stat(path.constData(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

class DesktopFileManagerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (!PrivateBus::isPossible()) {
            QSKIP("no message bus is installed");
        }
    }

    void showsInFileManager_data() {
        QTest::addColumn<bool>("present");
        QTest::addColumn<bool>("refuses");
        QTest::addColumn<QStringList>("shown");
        QTest::addColumn<QStringList>("opened");
        const QStringList item{u"file:///a%20b/c%FF.jpg"_s};
        const QStringList folder{u"file:///a%20b"_s};
        QTest::newRow("file manager") << true << false << item << QStringList();
        QTest::newRow("refusing one") << true << true << QStringList() << folder;
        QTest::newRow("none") << false << false << QStringList() << folder;
    }

    void showsInFileManager() {
        QFETCH(bool, present);
        QFETCH(bool, refuses);
        QFETCH(QStringList, shown);
        QFETCH(QStringList, opened);
        PrivateBus bus;
        std::unique_ptr<StandInFileManager> service;
        if (present) {
            service = std::make_unique<StandInFileManager>(bus.connect());
            service->refuses = refuses;
        }
        QStringList openedNow;
        DesktopFileManager manager(
            bus.connect(), [&](const QString &uri) { openedNow.append(uri); }, false);
        manager.showInFileManager(FileURL::fromNativePath("/a b/c\xFF.jpg"));
        QTRY_VERIFY_WITH_TIMEOUT((service && !service->shown.isEmpty()) || !openedNow.isEmpty(), limit);
        QCOMPARE(service ? service->shown : QStringList(), shown);
        QCOMPARE(openedNow, opened);
    }

    void opensThroughOpener() {
        QStringList opened;
        DesktopFileManager manager(
            QDBusConnection(u"nothing"_s), [&](const QString &uri) { opened.append(uri); }, true);
        manager.openInDefaultApp(FileURL::fromNativePath("/a#b?.mp4"));
        manager.openUrl(QUrl(u"mailto:a@b.c?subject=Mosa%20Feedback"_s));
        manager.showInFileManager(FileURL::fromNativePath("/x/y"));
        QCOMPARE(opened, QStringList({u"file:///a%23b%3F.mp4"_s, u"mailto:a@b.c?subject=Mosa%20Feedback"_s,
                                      u"file:///x"_s}));
    }

    void opensThroughPortal() {
        PrivateBus bus;
        StandInOpener portal(bus.connect());
        QTemporaryDir directory;
        const QByteArray folder = directory.path().toUtf8();
        const QByteArray file = folder + "/a\xFF.jpg";
        QFile made(QString::fromLatin1(folder + "/b.jpg"));
        QVERIFY(made.open(QIODevice::WriteOnly));
        made.close();
        QCOMPARE(::rename((folder + "/b.jpg").constData(), file.constData()), 0);
        DesktopFileManager manager(
            bus.connect(), [](const QString &) { QFAIL("opened outside the sandbox"); }, true);
        manager.openInDefaultApp(FileURL::fromNativePath(file));
        QTRY_COMPARE_WITH_TIMEOUT(portal.opened, QStringList(u"file %1"_s.arg(inode(file))), limit);
        manager.openInDefaultApp(FileURL::fromNativePath(folder));
        QTRY_COMPARE_WITH_TIMEOUT(portal.opened.size(), 2, limit);
        QCOMPARE(portal.opened[1], u"directory %1"_s.arg(inode(folder)));
        manager.openUrl(QUrl(u"https://a.b/c"_s));
        QTRY_COMPARE_WITH_TIMEOUT(portal.opened.value(2), u"https://a.b/c"_s, limit);
    }
};

QTEST_GUILESS_MAIN(DesktopFileManagerTest)
#include "DesktopFileManagerTest.moc"
