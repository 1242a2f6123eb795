#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QObject>
#include <QStringList>

/// The transaction half of the stand-in below: answers every method as the test says.
class StandInTransaction : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.PackageKit.Transaction")

public:
    struct Script {
        QStringList updates;
        /// The method that fails, with the error's text.
        QString failing;
        QString error;
        /// The method after whose start nothing more is heard.
        QString hanging;
    };

    StandInTransaction(const Script &script, QStringList &calls, QObject *parent)
        : QObject(parent), m_script(script), m_calls(calls) {}

public Q_SLOTS:
    void SetHints(const QStringList &) {}
    void RefreshCache(bool) { finish(QStringLiteral("RefreshCache")); }
    void GetUpdates(qulonglong) {
        for (const QString &id : m_script.updates) {
            Q_EMIT Package(5, id, QStringLiteral("a summary"));
        }
        finish(QStringLiteral("GetUpdates"));
    }
    void UpdatePackages(qulonglong, const QStringList &ids) {
        m_calls.append(ids);
        finish(QStringLiteral("UpdatePackages"));
    }

Q_SIGNALS:
    void Package(uint info, const QString &id, const QString &summary);
    void ErrorCode(uint code, const QString &details);
    void Finished(uint exit, uint runtime);

private:
    void finish(const QString &method) {
        m_calls.append(method);
        if (m_script.hanging == method) {
            return;
        }
        const bool fails = m_script.failing == method;
        if (fails) {
            Q_EMIT ErrorCode(2, m_script.error);
        }
        Q_EMIT Finished(fails ? 2 : 1, 7);
    }

    const Script &m_script;
    QStringList &m_calls;
};

/// Stands in for the system's package service on a private bus.
class StandInPackageKit : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.PackageKit")

public:
    explicit StandInPackageKit(QDBusConnection bus) : m_bus(std::move(bus)) {
        m_bus.registerObject(QStringLiteral("/org/freedesktop/PackageKit"), this,
                             QDBusConnection::ExportAllSlots);
        m_bus.registerService(QStringLiteral("org.freedesktop.PackageKit"));
    }
    void die() { m_bus.unregisterService(QStringLiteral("org.freedesktop.PackageKit")); }

    StandInTransaction::Script script;
    /// Methods in the order of their calls, with the packages to update.
    QStringList calls;

public Q_SLOTS:
    QDBusObjectPath CreateTransaction() {
        const QString path = QStringLiteral("/%1_transaction").arg(++m_transactions);
        m_bus.registerObject(path, new StandInTransaction(script, calls, this),
                             QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals);
        return QDBusObjectPath(path);
    }

private:
    QDBusConnection m_bus;
    int m_transactions = 0;
};
