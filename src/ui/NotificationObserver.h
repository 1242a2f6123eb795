#pragma once

#include <QObject>
#include <QString>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

/// Hears one notification of the default notification centre, from any sender. Main thread.
class NotificationObserver : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name MEMBER m_name NOTIFY nameChanged REQUIRED)

public:
    explicit NotificationObserver(QObject *parent = nullptr);

Q_SIGNALS:
    void nameChanged();
    void posted(const QVariant &object);

private:
    QString m_name;
};
