#pragma once

#include "PrivateBus.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>

#include <functional>

/// Stands in for a service of the desktop, with all of its objects: answers every call as the test says, and
/// keeps it.
class StandInService : public QDBusVirtualObject {
    Q_OBJECT

public:
    /// The reply to a call; an invalid message when there is none, or none yet.
    using Answer = std::function<QDBusMessage(const QDBusMessage &call)>;

    StandInService(QDBusConnection bus, QString name, Answer answer)
        : m_bus(std::move(bus)), m_name(std::move(name)), m_answer(std::move(answer)) {
        m_bus.registerVirtualObject(QStringLiteral("/"), this, QDBusConnection::SubPath);
        m_bus.registerService(m_name);
    }
    ~StandInService() override {
        m_bus.unregisterObject(QStringLiteral("/"), QDBusConnection::UnregisterTree);
        leave();
    }

    /// As when the service has crashed.
    void leave() { m_bus.unregisterService(m_name); }
    void send(const QDBusMessage &message) { m_bus.send(message); }
    void signal(const QString &path, const QString &interface, const QString &member,
                const QVariantList &arguments) {
        QDBusMessage message = QDBusMessage::createSignal(path, interface, member);
        message.setArguments(arguments);
        m_bus.send(message);
    }

    QList<QDBusMessage> calls;
    /// The members that were called, in order.
    QStringList members() const {
        QStringList names;
        for (const QDBusMessage &call : calls) {
            names.append(call.member());
        }
        return names;
    }
    QString introspect(const QString &) const override { return {}; }

private:
    bool handleMessage(const QDBusMessage &call, const QDBusConnection &) override {
        calls.append(call);
        const QDBusMessage reply = m_answer(call);
        if (reply.type() != QDBusMessage::InvalidMessage) {
            m_bus.send(reply);
        }
        return true;
    }

    QDBusConnection m_bus;
    QString m_name;
    Answer m_answer;
};
