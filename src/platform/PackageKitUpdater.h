#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <functional>

class PackageKitTransaction;

/// Looks for a newer version of one package through the system's package service, and installs it. Main
/// thread, asynchronous. It never looks by itself.
class PackageKitUpdater : public QObject {
    Q_OBJECT

public:
    enum class Phase {
        Idle,      ///< no check was asked for, or its result was dismissed
        Checking,  ///< looking for an update
        UpToDate,  ///< there is none
        Available, ///< version() can be installed
        Installing,
        Installed,    ///< version() will run at the next start
        CheckFailed,  ///< error() says why
        InstallFailed ///< likewise
    };
    Q_ENUM(Phase)

    /// Asks the bus for the service right away; without one no check is ever possible.
    PackageKitUpdater(QDBusConnection bus, QString packageName, QObject *parent = nullptr);

    /// A check may start now: false until the service is known to exist and while work is under way.
    bool canCheckForUpdates() const;
    /// Starts a check that the user asked for; nothing while canCheckForUpdates() is false.
    void checkForUpdates();
    /// Installs what the check found; nothing in another phase than Available.
    void install();
    /// The user has read the result.
    void dismiss();

    Phase phase() const { return m_phase; }
    const QString &version() const { return m_version; }
    const QString &error() const { return m_error; }
    /// 0 to 100 while Installing, -1 while the service does not say.
    int percentage() const { return m_percentage; }

Q_SIGNALS:
    void canCheckForUpdatesChanged();
    void phaseChanged();
    void percentageChanged();

private:
    using Done = void (PackageKitUpdater::*)(const QStringList &packageIds);

    void lookForService(const QString &listMethod, const std::function<void()> &otherwise);
    void run(const QString &method, const QVariantList &arguments, Done done);
    void listUpdates(const QStringList &);
    void readUpdates(const QStringList &packageIds);
    void noteInstalled(const QStringList &);
    void setPhase(Phase phase);
    bool isBusy() const { return m_phase == Phase::Checking || m_phase == Phase::Installing; }

    QDBusConnection m_bus;
    QString m_packageName;
    bool m_serviceExists = false;
    Phase m_phase = Phase::Idle;
    QString m_packageId;
    QString m_version;
    QString m_error;
    int m_percentage = -1;
};
