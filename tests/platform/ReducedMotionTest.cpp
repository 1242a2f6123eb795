#include "ReducedMotion.h"

#include "StandInService.h"

#include <QDBusMetaType>
#include <QTest>

using namespace Qt::StringLiterals;
using Settings = QMap<QString, QVariantMap>;

class ReducedMotionTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void followsTheDesktop_data() {
        QTest::addColumn<QString>("group");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QVariant>("less");
        QTest::addColumn<QVariant>("full");
        QTest::newRow("the portal's own")
            << u"org.freedesktop.appearance"_s << u"reduced-motion"_s << QVariant(1U) << QVariant(0U);
        QTest::newRow("a switch") << u"org.gnome.desktop.interface"_s << u"enable-animations"_s
                                  << QVariant(false) << QVariant(true);
        QTest::newRow("a factor") << u"org.kde.kdeglobals.KDE"_s << u"AnimationDurationFactor"_s
                                  << QVariant(u"0"_s) << QVariant(u"0.5"_s);
    }

    void followsTheDesktop() {
        QFETCH(QString, group);
        QFETCH(QString, key);
        QFETCH(QVariant, less);
        QFETCH(QVariant, full);
        PrivateBus bus;
        qDBusRegisterMetaType<Settings>();
        const Settings settings{{group, {{key, less}, {u"other"_s, 1}}}};
        StandInService desktop(
            bus.connect(), u"org.freedesktop.portal.Desktop"_s,
            [&](const QDBusMessage &call) { return call.createReply(QVariant::fromValue(settings)); });
        const auto change = [&](const QString &changed, const QVariant &value) {
            desktop.signal(u"/org/freedesktop/portal/desktop"_s, u"org.freedesktop.portal.Settings"_s,
                           u"SettingChanged"_s, {group, changed, QVariant::fromValue(QDBusVariant(value))});
        };
        const ReducedMotion motion(bus.connect());
        QTRY_VERIFY_WITH_TIMEOUT(motion.isActive(), PrivateBus::patience);
        change(key, full);
        QTRY_VERIFY_WITH_TIMEOUT(!motion.isActive(), PrivateBus::patience);
        change(u"other"_s, less);
        change(key, less);
        QTRY_VERIFY_WITH_TIMEOUT(motion.isActive(), PrivateBus::patience);
    }
};

QTEST_GUILESS_MAIN(ReducedMotionTest)
#include "ReducedMotionTest.moc"
