#include "ReducedMotion.h"

#include "PrivateBus.h"

#include <QDBusMessage>
#include <QDBusMetaType>
#include <QTest>

namespace {

constexpr int limit = 30000;
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
using Settings = QMap<QString, QVariantMap>;

/// Stands in for the desktop's portal.
class StandInSettings : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    StandInSettings(QDBusConnection bus, Settings settings)
        : m_bus(std::move(bus)), m_settings(std::move(settings)) {
        m_bus.registerObject(portalPath, this, QDBusConnection::ExportAllSlots);
        m_bus.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }

    void change(const QString &group, const QString &key, const QVariant &value) {
        QDBusMessage signal = QDBusMessage::createSignal(
            portalPath, QStringLiteral("org.freedesktop.portal.Settings"), QStringLiteral("SettingChanged"));
        signal << group << key << QVariant::fromValue(QDBusVariant(value));
        m_bus.send(signal);
    }

public Q_SLOTS:
    QMap<QString, QVariantMap> ReadAll(const QStringList &groups) {
        Settings asked;
        for (const QString &group : groups) {
            if (m_settings.contains(group)) {
                asked.insert(group, m_settings.value(group));
            }
        }
        return asked;
    }

private:
    QDBusConnection m_bus;
    Settings m_settings;
};

} // namespace

class ReducedMotionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qDBusRegisterMetaType<Settings>(); }
    void followsTheDesktop_data();
    void followsTheDesktop();
};

void ReducedMotionTest::followsTheDesktop_data() {
    QTest::addColumn<QString>("group");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("less");
    QTest::addColumn<QVariant>("full");
    QTest::newRow("the portal's own") << "org.freedesktop.appearance"
                                      << "reduced-motion" << QVariant(1U) << QVariant(0U);
    QTest::newRow("a switch") << "org.gnome.desktop.interface"
                              << "enable-animations" << QVariant(false) << QVariant(true);
    QTest::newRow("a factor") << "org.kde.kdeglobals.KDE"
                              << "AnimationDurationFactor" << QVariant(QStringLiteral("0"))
                              << QVariant(QStringLiteral("0.5"));
}

void ReducedMotionTest::followsTheDesktop() {
    if (!PrivateBus::isPossible()) {
        QSKIP("no dbus-daemon");
    }
    QFETCH(QString, group);
    QFETCH(QString, key);
    QFETCH(QVariant, less);
    QFETCH(QVariant, full);
    PrivateBus bus;
    StandInSettings desktop(bus.connect(), {{group, {{key, less}, {QStringLiteral("other"), 1}}}});
    const ReducedMotion motion(bus.connect());
    QTRY_VERIFY_WITH_TIMEOUT(motion.isActive(), limit);
    desktop.change(group, key, full);
    QTRY_VERIFY_WITH_TIMEOUT(!motion.isActive(), limit);
    desktop.change(group, QStringLiteral("other"), less);
    desktop.change(group, key, less);
    QTRY_VERIFY_WITH_TIMEOUT(motion.isActive(), limit);
}

QTEST_GUILESS_MAIN(ReducedMotionTest)

#include "ReducedMotionTest.moc"
