#pragma once

#include <QDBusMessage>
#include <QString>

/// Where the desktop's portals are reached: one service with one object and an interface for each of them.
namespace DesktopPortal {

inline QString service() {
    return QStringLiteral("org.freedesktop.portal.Desktop");
}

inline QString path() {
    return QStringLiteral("/org/freedesktop/portal/desktop");
}

inline QDBusMessage call(const QString &interface, const QString &method) {
    return QDBusMessage::createMethodCall(service(), path(), interface, method);
}

} // namespace DesktopPortal
