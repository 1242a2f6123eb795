#include "MosaUpdaterController.h"

#include <QCoreApplication>

using Phase = PackageKitUpdater::Phase;

MosaUpdaterController::MosaUpdaterController(const QDBusConnection &systemBus, const QString &packageName,
                                             QObject *parent)
    : QObject(parent), m_standardController(systemBus, packageName) {
    // Queued, so that whoever looks sees one value during a turn of the event loop.
    connect(&m_standardController, &PackageKitUpdater::canCheckForUpdatesChanged, this,
            &MosaUpdaterController::observe, Qt::QueuedConnection);
    connect(&m_standardController, &PackageKitUpdater::phaseChanged, this,
            &MosaUpdaterController::phaseChanged);
    connect(&m_standardController, &PackageKitUpdater::phaseChanged, this,
            &MosaUpdaterController::progressChanged);
    connect(&m_standardController, &PackageKitUpdater::percentageChanged, this,
            &MosaUpdaterController::progressChanged);
}

void MosaUpdaterController::observe() {
    // Asked again: more may have happened since the notice was sent.
    const bool now = m_standardController.canCheckForUpdates();
    if (m_canCheckForUpdates != now) {
        m_canCheckForUpdates = now;
        Q_EMIT canCheckForUpdatesChanged();
    }
}

void MosaUpdaterController::checkForUpdates() {
    if (m_standardController.canCheckForUpdates()) {
        m_standardController.checkForUpdates();
    }
}

bool MosaUpdaterController::isBusy() const {
    return m_standardController.phase() == Phase::Checking ||
           m_standardController.phase() == Phase::Installing;
}

double MosaUpdaterController::progress() const {
    const int percentage = m_standardController.percentage();
    return m_standardController.phase() == Phase::Installing && percentage >= 0 ? percentage / 100.0 : -1;
}

QString MosaUpdaterController::title() const {
    switch (m_standardController.phase()) {
    case Phase::Idle:
        return {};
    case Phase::Checking:
        return tr("Checking for Updates…");
    case Phase::UpToDate:
        return tr("Mosa Is Up to Date");
    case Phase::Available:
        return tr("An Update Is Available");
    case Phase::Installing:
        return tr("Installing the Update…");
    case Phase::Installed:
        return tr("The Update Is Installed");
    case Phase::CheckFailed:
        return tr("Updates Could Not Be Checked");
    case Phase::InstallFailed:
        return tr("The Update Could Not Be Installed");
    }
    return {};
}

QString MosaUpdaterController::details() const {
    switch (m_standardController.phase()) {
    case Phase::UpToDate:
        return tr("Version %1 is the newest one available.").arg(QCoreApplication::applicationVersion());
    case Phase::Available:
        return tr("Version %1 can be installed. You have version %2.")
            .arg(m_standardController.version(), QCoreApplication::applicationVersion());
    case Phase::Installed:
        return tr("Version %1 will run the next time you open Mosa.").arg(m_standardController.version());
    case Phase::CheckFailed:
    case Phase::InstallFailed:
        return m_standardController.error();
    default:
        return {};
    }
}
