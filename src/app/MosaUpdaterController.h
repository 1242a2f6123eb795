#pragma once

#include "PackageKitUpdater.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

/// Connects the program to the system's software updates and publishes whether the user may look for one now.
/// Main thread; one for the program's run.
class MosaUpdaterController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("one for the program's run, made by the application")
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY canCheckForUpdatesChanged)
    /// What the small window about updates shows; "" while there is nothing to show.
    Q_PROPERTY(QString title READ title NOTIFY phaseChanged)
    Q_PROPERTY(QString details READ details NOTIFY phaseChanged)
    Q_PROPERTY(bool busy READ isBusy NOTIFY phaseChanged)
    Q_PROPERTY(bool installable READ isInstallable NOTIFY phaseChanged)
    /// 0 to 1, -1 while unknown.
    Q_PROPERTY(double progress READ progress NOTIFY progressChanged)

public:
    MosaUpdaterController(const QDBusConnection &systemBus, const QString &packageName,
                          QObject *parent = nullptr);

    /// False until the updater's first answer has come round, then as it says.
    bool canCheckForUpdates() const { return m_canCheckForUpdates; }

    Q_INVOKABLE void checkForUpdates();
    Q_INVOKABLE void install() { m_standardController.install(); }
    Q_INVOKABLE void dismiss() { m_standardController.dismiss(); }

    QString title() const;
    QString details() const;
    bool isBusy() const;
    bool isInstallable() const { return m_standardController.phase() == PackageKitUpdater::Phase::Available; }
    double progress() const;

Q_SIGNALS:
    void canCheckForUpdatesChanged();
    void phaseChanged();
    void progressChanged();

private:
    void observe();

    PackageKitUpdater m_standardController;
    bool m_canCheckForUpdates = false;
};
