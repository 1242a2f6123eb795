#include "PackageKitTransaction.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QLocale>

const QString PackageKitTransaction::service = QStringLiteral("org.freedesktop.PackageKit");
const QString PackageKitTransaction::path = QStringLiteral("/org/freedesktop/PackageKit");

namespace {

const QString transactionInterface = QStringLiteral("org.freedesktop.PackageKit.Transaction");

constexpr uint exitSuccess = 1;
constexpr uint exitCancelled = 3;

QString plainError(const QDBusMessage &reply) {
    return reply.errorMessage().isEmpty() ? reply.errorName() : reply.errorMessage();
}

} // namespace

PackageKitTransaction::PackageKitTransaction(QDBusConnection bus, QObject *parent)
    : QObject(parent), m_bus(std::move(bus)) {
    // A service that dies never says that the work is finished.
    auto *watcher =
        new QDBusServiceWatcher(service, m_bus, QDBusServiceWatcher::WatchForUnregistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { end(tr("The package service ended unexpectedly.")); });
}

void PackageKitTransaction::run(const QString &method, const QVariantList &arguments) {
    const QDBusMessage call =
        QDBusMessage::createMethodCall(service, path, service, QStringLiteral("CreateTransaction"));
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, method, arguments] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (reply.isError()) {
            end(plainError(reply.reply()));
            return;
        }
        m_path = reply.value().path();
        listen();
        begin(method, arguments);
    });
}

void PackageKitTransaction::listen() {
    m_bus.connect(service, m_path, transactionInterface, QStringLiteral("Package"), this,
                  SLOT(notePackage(uint, QString, QString)));
    m_bus.connect(service, m_path, transactionInterface, QStringLiteral("ErrorCode"), this,
                  SLOT(noteError(uint, QString)));
    m_bus.connect(service, m_path, transactionInterface, QStringLiteral("Finished"), this,
                  SLOT(noteFinished(uint, uint)));
    m_bus.connect(service, m_path, QStringLiteral("org.freedesktop.DBus.Properties"),
                  QStringLiteral("PropertiesChanged"), this,
                  SLOT(noteProperties(QString, QVariantMap, QStringList)));
}

void PackageKitTransaction::begin(const QString &method, const QVariantList &arguments) {
    QDBusMessage hints =
        QDBusMessage::createMethodCall(service, m_path, transactionInterface, QStringLiteral("SetHints"));
    hints << QStringList{QStringLiteral("locale=") + QLocale().name() + QStringLiteral(".UTF-8"),
                         QStringLiteral("background=false"), QStringLiteral("interactive=true")};
    m_bus.asyncCall(hints);

    QDBusMessage call = QDBusMessage::createMethodCall(service, m_path, transactionInterface, method);
    call.setArguments(arguments);
    call.setInteractiveAuthorizationAllowed(true);
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        if (watcher->isError()) {
            end(plainError(watcher->reply()));
        }
    });
}

void PackageKitTransaction::notePackage(uint, const QString &packageId, const QString &) {
    m_packageIds.append(packageId);
}

void PackageKitTransaction::noteError(uint, const QString &details) {
    m_error = details;
}

void PackageKitTransaction::noteFinished(uint exitCode, uint) {
    if (exitCode == exitSuccess) {
        end({});
    } else if (!m_error.isEmpty()) {
        end(m_error);
    } else {
        end(exitCode == exitCancelled ? tr("The operation was cancelled.")
                                      : tr("The package service could not finish the operation."));
    }
}

void PackageKitTransaction::noteProperties(const QString &interface, const QVariantMap &changed,
                                           const QStringList &) {
    const QVariant percentage = changed.value(QStringLiteral("Percentage"));
    // 101 stands for unknown.
    if (interface == transactionInterface && percentage.isValid() && percentage.toInt() <= 100) {
        Q_EMIT percentageChanged(percentage.toInt());
    }
}

void PackageKitTransaction::end(const QString &error) {
    if (!m_ended) {
        m_ended = true;
        Q_EMIT finished(m_packageIds, error);
    }
}
