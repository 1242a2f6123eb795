#include "SingleInstance.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

namespace {

// A healthy bus answers within a millisecond; a window that runs may be busy for a moment.
constexpr int nameLimit = 1000;
constexpr int handOverLimit = 5000;

// Replies that org.freedesktop.DBus.RequestName defines.
constexpr uint doNotQueue = 4;
constexpr uint nameTaken = 3;

// What the desktop gave this start to let the window come to the front.
QVariantMap platformData() {
    QVariantMap data;
    const QByteArray token = qgetenv("XDG_ACTIVATION_TOKEN");
    const QByteArray startupId = qgetenv("DESKTOP_STARTUP_ID");
    if (!token.isEmpty()) {
        data.insert(QStringLiteral("activation-token"), QString::fromUtf8(token));
    }
    if (!startupId.isEmpty()) {
        data.insert(QStringLiteral("desktop-startup-id"), QString::fromUtf8(startupId));
    }
    return data;
}

} // namespace

SingleInstance::SingleInstance(QDBusConnection bus, QString name, QString path, QObject *parent)
    : QObject(parent), m_bus(std::move(bus)), m_name(std::move(name)), m_path(std::move(path)) {
    m_limit.setSingleShot(true);
    connect(&m_limit, &QTimer::timeout, this, [this] { decide(true); });
}

SingleInstance::~SingleInstance() {
    if (m_bus.isConnected()) {
        m_bus.unregisterObject(m_path);
    }
}

void SingleInstance::start(const std::optional<FileURL> &folder) {
    m_folder = folder;
    if (!m_bus.isConnected()) {
        m_limit.start(0);
        return;
    }
    // Before the name: who sees the name may call at once.
    m_bus.registerObject(m_path, &m_application, QDBusConnection::ExportAllSlots);
    requestName();
}

void SingleInstance::await(const QDBusPendingCall &call, int milliseconds,
                           void (SingleInstance::*next)(const QDBusMessage &)) {
    m_limit.start(milliseconds);
    auto *watcher = new QDBusPendingCallWatcher(call, this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, next] {
        watcher->deleteLater();
        if (!m_decided) {
            (this->*next)(watcher->reply());
        }
    });
}

void SingleInstance::requestName() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("RequestName"));
    call << m_name << doNotQueue;
    await(m_bus.asyncCall(call), nameLimit, &SingleInstance::nameAnswered);
}

void SingleInstance::nameAnswered(const QDBusMessage &reply) {
    const bool taken =
        reply.type() == QDBusMessage::ReplyMessage && reply.arguments().value(0).toUInt() == nameTaken;
    if (taken) {
        handOver();
    } else {
        decide(true);
    }
}

void SingleInstance::handOver() {
    QDBusMessage call =
        QDBusMessage::createMethodCall(m_name, m_path, QStringLiteral("org.freedesktop.Application"),
                                       m_folder ? QStringLiteral("Open") : QStringLiteral("Activate"));
    if (m_folder) {
        call << QStringList{QString::fromLatin1(m_folder->uri())};
    }
    call << platformData();
    await(m_bus.asyncCall(call, handOverLimit), handOverLimit, &SingleInstance::handOverAnswered);
}

void SingleInstance::handOverAnswered(const QDBusMessage &reply) {
    decide(reply.type() != QDBusMessage::ReplyMessage);
}

void SingleInstance::decide(bool run) {
    if (m_decided) {
        return;
    }
    m_decided = true;
    m_limit.stop();
    if (run) {
        Q_EMIT running();
    } else {
        Q_EMIT handedOver();
    }
}
