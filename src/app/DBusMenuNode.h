#pragma once

#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QVariantMap>

/// One entry of an exported menu with those below it, as com.canonical.dbusmenu sends it: (ia{sv}av).
struct DBusMenuNode {
    int id = 0;
    QVariantMap properties;
    QList<DBusMenuNode> children;
};

/// An entry without those below it: (ia{sv}).
struct DBusMenuProperties {
    int id = 0;
    QVariantMap properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuNode &node);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuNode &node);
QDBusArgument &operator<<(QDBusArgument &argument, const DBusMenuProperties &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, DBusMenuProperties &item);

/// Before any of them goes over the bus; may be called again.
void registerDBusMenuTypes();

Q_DECLARE_METATYPE(DBusMenuNode)
Q_DECLARE_METATYPE(DBusMenuProperties)
