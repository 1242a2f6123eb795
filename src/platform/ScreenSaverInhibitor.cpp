#include "ScreenSaverInhibitor.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include <memory>

namespace {

QDBusMessage screenSaverCall(const QString &method) {
    return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.ScreenSaver"),
                                          QStringLiteral("/org/freedesktop/ScreenSaver"),
                                          QStringLiteral("org.freedesktop.ScreenSaver"), method);
}

void unInhibit(const QDBusConnection &bus, uint cookie) {
    QDBusMessage call = screenSaverCall(QStringLiteral("UnInhibit"));
    call << cookie;
    bus.asyncCall(call);
}

} // namespace

ScreenSaverInhibitor::ScreenSaverInhibitor(QDBusConnection bus, const QString &reason, QObject *parent)
    : QObject(parent), m_bus(std::move(bus)), m_reason(reason) {}

ScreenSaverInhibitor::~ScreenSaverInhibitor() {
    setActive(false);
}

void ScreenSaverInhibitor::setActive(bool active) {
    if (active == m_active) {
        return;
    }
    m_active = active;
    if (!active) {
        release();
    } else if (!m_pending && !m_cookie) {
        inhibit();
    }
}

void ScreenSaverInhibitor::inhibit() {
    if (!m_bus.isConnected()) {
        return;
    }
    QDBusMessage call = screenSaverCall(QStringLiteral("Inhibit"));
    call << QStringLiteral("Mosa") << m_reason;
    // Not this object's child: an answer that comes after its end has to be given back all the same.
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call));
    m_pending = true;
    const auto answered = std::make_shared<bool>(false);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, answered] {
        *answered = true;
        onInhibited(watcher);
    });
    connect(watcher, &QDBusPendingCallWatcher::finished, watcher, [watcher, answered, bus = m_bus] {
        const QDBusPendingReply<uint> reply = *watcher;
        if (!*answered && reply.isValid()) {
            unInhibit(bus, reply.value());
        }
        watcher->deleteLater();
    });
}

void ScreenSaverInhibitor::onInhibited(QDBusPendingCallWatcher *call) {
    m_pending = false;
    const QDBusPendingReply<uint> reply = *call;
    if (reply.isValid()) {
        m_cookie = reply.value();
    }
    if (!m_active) {
        release();
    }
}

void ScreenSaverInhibitor::release() {
    if (m_cookie) {
        unInhibit(m_bus, *m_cookie);
        m_cookie.reset();
    }
}
