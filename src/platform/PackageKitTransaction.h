#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QStringList>
#include <QVariantList>

class QDBusMessage;

/// One piece of work of the system's package service, from its creation there to its end. Main thread,
/// asynchronous; used once.
class PackageKitTransaction : public QObject {
    Q_OBJECT

public:
    explicit PackageKitTransaction(QDBusConnection bus, QObject *parent = nullptr);

    /// Starts the service's method of that name; finished() follows exactly once.
    void run(const QString &method, const QVariantList &arguments);

    static const QString service;
    static const QString path;

Q_SIGNALS:
    /// The ids of the packages that the work named, "name;version;architecture;origin"; an empty error when
    /// it succeeded.
    void finished(const QStringList &packageIds, const QString &error);
    /// 0 to 100.
    void percentageChanged(int percentage);

private Q_SLOTS:
    void notePackage(uint info, const QString &packageId, const QString &summary);
    void noteError(uint code, const QString &details);
    void noteFinished(uint exitCode, uint milliseconds);
    void noteProperties(const QString &interface, const QVariantMap &changed, const QStringList &invalidated);

private:
    void listen();
    void begin(const QString &method, const QVariantList &arguments);
    void end(const QString &error);

    QDBusConnection m_bus;
    QString m_path;
    QStringList m_packageIds;
    QString m_error;
    bool m_ended = false;
};
