#pragma once

#include <QObject>
#include <QVariant>

/// Named notifications between parts that do not know each other. Main thread; delivered at once, in the
/// order of connection.
class NotificationCentre : public QObject {
    Q_OBJECT

public:
    static NotificationCentre &defaultCentre();

    void post(const QString &name, const QVariant &object = {}) { Q_EMIT posted(name, object); }

Q_SIGNALS:
    void posted(const QString &name, const QVariant &object);
};
