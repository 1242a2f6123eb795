#include "ReducedMotion.h"

#include "DesktopPortal.h"

#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <algorithm>

namespace {

const QString settingsInterface = QStringLiteral("org.freedesktop.portal.Settings");

/// Groups of settings, each with its keys.
using Settings = QMap<QString, QVariantMap>;

/// A setting that speaks of movement, and how.
struct Wish {
    const char *group;
    const char *key;
    bool (*reduces)(const QVariant &value);
};

const std::array<Wish, 3> wishes{{
    {"org.freedesktop.appearance", "reduced-motion",
     [](const QVariant &value) { return value.toUInt() == 1; }},
    {"org.gnome.desktop.interface", "enable-animations",
     [](const QVariant &value) { return value.isValid() && !value.toBool(); }},
    {"org.kde.kdeglobals.KDE", "AnimationDurationFactor",
     [](const QVariant &value) {
         bool isNumber = false;
         return value.toString().toDouble(&isNumber) <= 0 && isNumber;
     }},
}};

} // namespace

ReducedMotion::ReducedMotion(QDBusConnection bus, QObject *parent) : QObject(parent), m_bus(std::move(bus)) {
    if (!m_bus.isConnected()) {
        return;
    }
    qDBusRegisterMetaType<Settings>();
    // Before the question, so that no change is missed.
    m_bus.connect(DesktopPortal::service(), DesktopPortal::path(), settingsInterface,
                  QStringLiteral("SettingChanged"), this, SLOT(settingChanged(QDBusMessage)));
    ask();
}

void ReducedMotion::ask() {
    QStringList groups;
    for (const Wish &wish : wishes) {
        groups.append(QLatin1String(wish.group));
    }
    QDBusMessage call = DesktopPortal::call(settingsInterface, QStringLiteral("ReadAll"));
    call << groups;
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<Settings> reply = *watcher;
        if (reply.isError()) {
            return;
        }
        const Settings settings = reply.value();
        for (const Wish &wish : wishes) {
            const QString group = QLatin1String(wish.group);
            const QString key = QLatin1String(wish.key);
            take(group, key, settings.value(group).value(key));
        }
    });
}

void ReducedMotion::settingChanged(const QDBusMessage &message) {
    const QVariantList arguments = message.arguments();
    if (arguments.size() == 3) {
        take(arguments[0].toString(), arguments[1].toString(), arguments[2].value<QDBusVariant>().variant());
    }
}

void ReducedMotion::take(const QString &group, const QString &key, const QVariant &value) {
    const auto wish = std::find_if(wishes.begin(), wishes.end(), [&](const Wish &candidate) {
        return group == QLatin1String(candidate.group) && key == QLatin1String(candidate.key);
    });
    if (wish == wishes.end()) {
        return;
    }
    m_reduced[size_t(wish - wishes.begin())] = wish->reduces(value);
    const bool active = std::find(m_reduced.begin(), m_reduced.end(), true) != m_reduced.end();
    if (m_active != active) {
        m_active = active;
        Q_EMIT activeChanged();
    }
}
