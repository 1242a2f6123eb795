#include "NotificationObserver.h"

#include "NotificationCentre.h"

NotificationObserver::NotificationObserver(QObject *parent) : QObject(parent) {
    connect(&NotificationCentre::defaultCentre(), &NotificationCentre::posted, this,
            [this](const QString &name, const QVariant &object) {
                if (name == m_name) {
                    Q_EMIT posted(object);
                }
            });
}
