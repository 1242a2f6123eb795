#include "PackageKitUpdater.h"

#include "PrivateBus.h"
#include "StandInPackageKit.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

using Phase = PackageKitUpdater::Phase;

namespace {

constexpr int limit = 30000;

} // namespace

class PackageKitUpdaterTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        if (!PrivateBus::isPossible()) {
            QSKIP("no message bus is installed");
        }
    }

    void staysUnableWithoutService() {
        PrivateBus bus;
        PackageKitUpdater updater(bus.connect(), u"mosa"_s);
        // The updater asked first, so its answer is in before this one's.
        QVERIFY(bus.connect().interface()->registeredServiceNames().isValid());
        QTest::qWait(200);
        QVERIFY(!updater.canCheckForUpdates());
        updater.checkForUpdates();
        QCOMPARE(updater.phase(), Phase::Idle);
    }

    void staysUnableWithoutBus() {
        PackageKitUpdater updater(QDBusConnection(u"nothing"_s), u"mosa"_s);
        QVERIFY(!updater.canCheckForUpdates());
    }

    void checks_data() {
        QTest::addColumn<QStringList>("updates");
        QTest::addColumn<QString>("failing");
        QTest::addColumn<Phase>("phase");
        QTest::addColumn<QString>("text");
        const QString ours = u"mosa;0.2.0;amd64;stable"_s;
        const QString other = u"mosaic;9.9;amd64;stable"_s;
        QTest::newRow("nothing") << QStringList() << "" << Phase::UpToDate << "";
        QTest::newRow("only other packages") << QStringList{other} << "" << Phase::UpToDate << "";
        QTest::newRow("a newer version") << QStringList{other, ours} << "" << Phase::Available << "0.2.0";
        QTest::newRow("malformed id") << QStringList{u"mosa"_s} << "" << Phase::UpToDate << "";
        QTest::newRow("no network") << QStringList{ours} << "RefreshCache" << Phase::CheckFailed
                                    << "No network";
        QTest::newRow("broken list") << QStringList{ours} << "GetUpdates" << Phase::CheckFailed
                                     << "No network";
    }

    void checks() {
        QFETCH(QStringList, updates);
        QFETCH(QString, failing);
        QFETCH(QString, text);
        PrivateBus bus;
        StandInPackageKit service(bus.connect());
        service.script = {updates, failing, u"No network"_s, {}};
        PackageKitUpdater updater(bus.connect(), u"mosa"_s);
        QVERIFY(!updater.canCheckForUpdates());
        QTRY_VERIFY_WITH_TIMEOUT(updater.canCheckForUpdates(), limit);

        QSignalSpy ability(&updater, &PackageKitUpdater::canCheckForUpdatesChanged);
        updater.checkForUpdates();
        QVERIFY(!updater.canCheckForUpdates());
        QCOMPARE(updater.phase(), Phase::Checking);
        QTRY_VERIFY_WITH_TIMEOUT(updater.canCheckForUpdates(), limit);
        QCOMPARE(ability.size(), 2);
        QTEST(updater.phase(), "phase");
        QCOMPARE(updater.phase() == Phase::CheckFailed ? updater.error() : updater.version(), text);
    }

    void installsWhatItFound_data() {
        QTest::addColumn<QString>("failing");
        QTest::addColumn<Phase>("phase");
        QTest::newRow("allowed") << QString() << Phase::Installed;
        QTest::newRow("refused") << u"UpdatePackages"_s << Phase::InstallFailed;
    }

    void installsWhatItFound() {
        QFETCH(QString, failing);
        PrivateBus bus;
        StandInPackageKit service(bus.connect());
        const QString id = u"mosa;0.2.0;amd64;stable"_s;
        service.script = {{id}, failing, u"Not authorised"_s, {}};
        PackageKitUpdater updater(bus.connect(), u"mosa"_s);
        updater.install();
        QCOMPARE(updater.phase(), Phase::Idle);
        QTRY_VERIFY_WITH_TIMEOUT(updater.canCheckForUpdates(), limit);
        updater.checkForUpdates();
        QTRY_COMPARE_WITH_TIMEOUT(updater.phase(), Phase::Available, limit);
        updater.install();
        QVERIFY(!updater.canCheckForUpdates());
        QTRY_VERIFY_WITH_TIMEOUT(updater.canCheckForUpdates(), limit);
        QTEST(updater.phase(), "phase");
        QCOMPARE(service.calls, QStringList({u"RefreshCache"_s, u"GetUpdates"_s, id, u"UpdatePackages"_s}));
        updater.dismiss();
        QCOMPARE(updater.phase(), Phase::Idle);
    }

    void failsWhenServiceDies() {
        PrivateBus bus;
        StandInPackageKit service(bus.connect());
        service.script.hanging = u"GetUpdates"_s;
        PackageKitUpdater updater(bus.connect(), u"mosa"_s);
        QTRY_VERIFY_WITH_TIMEOUT(updater.canCheckForUpdates(), limit);
        updater.checkForUpdates();
        QTRY_VERIFY_WITH_TIMEOUT(service.calls.contains(u"GetUpdates"_s), limit);
        updater.dismiss();
        QCOMPARE(updater.phase(), Phase::Checking);
        service.die();
        QTRY_COMPARE_WITH_TIMEOUT(updater.phase(), Phase::CheckFailed, limit);
        QVERIFY(!updater.error().isEmpty());
        QVERIFY(updater.canCheckForUpdates());
    }
};

QTEST_GUILESS_MAIN(PackageKitUpdaterTest)
#include "PackageKitUpdaterTest.moc"
