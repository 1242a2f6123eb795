#include "PackageKitUpdater.h"

#include "StandInService.h"

#include <QDBusObjectPath>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;

using Phase = PackageKitUpdater::Phase;

/// What the whole program's scenario of updates does not show.
class PackageKitUpdaterTest : public QObject {
    Q_OBJECT

    static constexpr int patience = PrivateBus::patience;

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<StandInService> m_service;
    std::unique_ptr<PackageKitUpdater> m_updater;
    QStringList m_updates;
    /// The method that fails, and the one after which nothing is heard.
    QString m_failing;
    QString m_hanging;

    QDBusMessage reply(const QDBusMessage &call) {
        if (call.member() == u"CreateTransaction"_s) {
            return call.createReply(QVariant::fromValue(QDBusObjectPath(u"/transaction"_s)));
        }
        if (call.member() == u"SetHints"_s || call.member() == m_hanging) {
            return call.createReply();
        }
        const auto tell = [&](const QString &member, const QVariantList &arguments) {
            m_service->signal(call.path(), call.interface(), member, arguments);
        };
        const bool fails = call.member() == m_failing;
        if (fails) {
            tell(u"ErrorCode"_s, {2U, u"No network"_s});
        } else if (call.member() == u"GetUpdates"_s) {
            for (const QString &id : std::as_const(m_updates)) {
                tell(u"Package"_s, {5U, id, u"a summary"_s});
            }
        }
        tell(u"Finished"_s, {fails ? 2U : 1U, 7U});
        return call.createReply();
    }

    bool check() {
        m_service =
            std::make_unique<StandInService>(m_bus->connect(), u"org.freedesktop.PackageKit"_s,
                                             [this](const QDBusMessage &call) { return reply(call); });
        m_updater = std::make_unique<PackageKitUpdater>(m_bus->connect(), u"mosa"_s);
        const bool able = QTest::qWaitFor([&] { return m_updater->canCheckForUpdates(); }, patience);
        m_updater->checkForUpdates();
        return able && !m_updater->canCheckForUpdates();
    }

private Q_SLOTS:
    void init() {
        m_bus = std::make_unique<PrivateBus>();
        REQUIRE_BUS(*m_bus);
        m_failing.clear();
        m_hanging.clear();
    }

    void cleanup() {
        m_updater.reset();
        m_service.reset();
        m_bus.reset();
    }

    void checks_data() {
        QTest::addColumn<QStringList>("updates");
        QTest::addColumn<QString>("failing");
        QTest::addColumn<Phase>("phase");
        QTest::addColumn<QString>("text");
        const QString ours = u"mosa;0.2.0;amd64;stable"_s;
        const QString other = u"mosaic;9.9;amd64;stable"_s;
        QTest::newRow("only other packages") << QStringList{other} << "" << Phase::UpToDate << "";
        QTest::newRow("a newer version") << QStringList{other, ours} << "" << Phase::Available << "0.2.0";
        QTest::newRow("malformed id") << QStringList{u"mosa"_s} << "" << Phase::UpToDate << "";
        QTest::newRow("no network") << QStringList{ours} << "RefreshCache" << Phase::CheckFailed
                                    << "No network";
    }

    void checks() {
        QFETCH(QStringList, updates);
        QFETCH(QString, failing);
        QFETCH(QString, text);
        m_updates = updates;
        m_failing = failing;
        QVERIFY(check());
        QTRY_VERIFY_WITH_TIMEOUT(m_updater->canCheckForUpdates(), patience);
        QTEST(m_updater->phase(), "phase");
        QCOMPARE(m_updater->phase() == Phase::CheckFailed ? m_updater->error() : m_updater->version(), text);
    }

    void tellsThatAnInstallationFailed() {
        m_updates = QStringList{u"mosa;0.2.0;amd64;stable"_s};
        m_failing = u"UpdatePackages"_s;
        QVERIFY(check());
        QTRY_COMPARE_WITH_TIMEOUT(m_updater->phase(), Phase::Available, patience);
        m_updater->install();
        QTRY_COMPARE_WITH_TIMEOUT(m_updater->phase(), Phase::InstallFailed, patience);
        QCOMPARE(m_service->calls.last().arguments()[1].toStringList(), m_updates);
    }

    void failsWhenServiceDies() {
        m_hanging = u"GetUpdates"_s;
        QVERIFY(check());
        QTRY_VERIFY_WITH_TIMEOUT(m_service->members().contains(m_hanging), patience);
        m_service->leave();
        QTRY_COMPARE_WITH_TIMEOUT(m_updater->phase(), Phase::CheckFailed, patience);
        QVERIFY(!m_updater->error().isEmpty() && m_updater->canCheckForUpdates());
    }
};

QTEST_GUILESS_MAIN(PackageKitUpdaterTest)
#include "PackageKitUpdaterTest.moc"
