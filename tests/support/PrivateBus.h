#pragma once

#include <QDBusConnection>
#include <QStringList>

/// The session bus of a test that runs with one of its own: mosa_test(… BUS). Connections made through an
/// object are closed with it.
class PrivateBus {
public:
    /// Milliseconds that an answer may take on a busy machine.
    static constexpr int patience = 30'000;

    PrivateBus() = default;
    ~PrivateBus() {
        for (const QString &name : m_names) {
            QDBusConnection::disconnectFromBus(name);
        }
    }
    PrivateBus(const PrivateBus &) = delete;
    PrivateBus &operator=(const PrivateBus &) = delete;

    QDBusConnection connect() {
        m_names.append(QStringLiteral("private-bus-%1-%2").arg(quintptr(this)).arg(m_names.size()));
        return QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_names.constLast());
    }

private:
    QStringList m_names;
};
