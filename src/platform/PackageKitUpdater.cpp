#include "PackageKitUpdater.h"

#include "PackageKitTransaction.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace {

// Bit fields of the service: its enumeration's value is the number of the bit.
constexpr qulonglong filterNone = 1U << 1U;
constexpr qulonglong onlyTrusted = 1U << 1U;

} // namespace

PackageKitUpdater::PackageKitUpdater(QDBusConnection bus, QString packageName, QObject *parent)
    : QObject(parent), m_bus(std::move(bus)), m_packageName(std::move(packageName)) {
    if (m_bus.isConnected()) {
        // It is usually not running but started by the bus when it is called.
        lookForService(QStringLiteral("ListActivatableNames"),
                       [this] { lookForService(QStringLiteral("ListNames"), [] {}); });
    }
}

void PackageKitUpdater::lookForService(const QString &listMethod, const std::function<void()> &otherwise) {
    const QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), listMethod);
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, otherwise] {
        watcher->deleteLater();
        const QDBusPendingReply<QStringList> reply = *watcher;
        if (reply.isError() || !reply.value().contains(PackageKitTransaction::service)) {
            otherwise();
            return;
        }
        m_serviceExists = true;
        Q_EMIT canCheckForUpdatesChanged();
    });
}

bool PackageKitUpdater::canCheckForUpdates() const {
    return m_serviceExists && !isBusy();
}

void PackageKitUpdater::checkForUpdates() {
    if (!canCheckForUpdates()) {
        return;
    }
    setPhase(Phase::Checking);
    run(QStringLiteral("RefreshCache"), {false}, &PackageKitUpdater::listUpdates);
}

void PackageKitUpdater::listUpdates(const QStringList &) {
    run(QStringLiteral("GetUpdates"), {filterNone}, &PackageKitUpdater::readUpdates);
}

void PackageKitUpdater::readUpdates(const QStringList &packageIds) {
    for (const QString &id : packageIds) {
        const QStringList parts = id.split(QLatin1Char(';'));
        if (parts.size() >= 2 && parts[0] == m_packageName) {
            m_packageId = id;
            m_version = parts[1];
            setPhase(Phase::Available);
            return;
        }
    }
    setPhase(Phase::UpToDate);
}

void PackageKitUpdater::install() {
    if (m_phase != Phase::Available) {
        return;
    }
    m_percentage = -1;
    setPhase(Phase::Installing);
    run(QStringLiteral("UpdatePackages"), {onlyTrusted, QStringList{m_packageId}},
        &PackageKitUpdater::noteInstalled);
}

void PackageKitUpdater::noteInstalled(const QStringList &) {
    setPhase(Phase::Installed);
}

void PackageKitUpdater::run(const QString &method, const QVariantList &arguments, Done done) {
    auto *transaction = new PackageKitTransaction(m_bus, this);
    connect(transaction, &PackageKitTransaction::percentageChanged, this, [this](int percentage) {
        m_percentage = percentage;
        Q_EMIT percentageChanged();
    });
    connect(transaction, &PackageKitTransaction::finished, this,
            [this, transaction, done](const QStringList &packageIds, const QString &error) {
                transaction->deleteLater();
                if (error.isEmpty()) {
                    (this->*done)(packageIds);
                } else {
                    m_error = error;
                    setPhase(m_phase == Phase::Installing ? Phase::InstallFailed : Phase::CheckFailed);
                }
            });
    transaction->run(method, arguments);
}

void PackageKitUpdater::dismiss() {
    if (!isBusy()) {
        setPhase(Phase::Idle);
    }
}

void PackageKitUpdater::setPhase(Phase phase) {
    if (m_phase == phase) {
        return;
    }
    const bool couldCheck = canCheckForUpdates();
    m_phase = phase;
    Q_EMIT phaseChanged();
    if (couldCheck != canCheckForUpdates()) {
        Q_EMIT canCheckForUpdatesChanged();
    }
}
