#include "PortalFolderChooser.h"

#include "DesktopPortal.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QPromise>
#include <QRandomGenerator>

namespace {

const QString chooserInterface = QStringLiteral("org.freedesktop.portal.FileChooser");
const QString requestInterface = QStringLiteral("org.freedesktop.portal.Request");

std::optional<FileURL> chosenFolder(const QDBusMessage &response) {
    const QVariantList arguments = response.arguments();
    if (arguments.size() < 2 || arguments[0].toUInt() != 0) {
        return std::nullopt;
    }
    const QStringList uris =
        qdbus_cast<QVariantMap>(arguments[1]).value(QStringLiteral("uris")).toStringList();
    return uris.isEmpty() ? std::nullopt : FileURL::fromArgument(uris.constFirst().toUtf8(), QByteArray("/"));
}

// In the portal's labels an underscore marks the access key.
QString plainLabel(QString label) {
    return label.replace(QLatin1Char('_'), QLatin1String("__"));
}

} // namespace

PortalFolderChooser::PortalFolderChooser(QDBusConnection bus, ParentWindow parentWindow,
                                         FolderChooser &fallback, QObject *parent)
    : QObject(parent), m_bus(std::move(bus)), m_parentWindow(std::move(parentWindow)), m_fallback(fallback) {
    if (!m_bus.isConnected()) {
        return;
    }
    QDBusMessage call =
        DesktopPortal::call(QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call << chooserInterface << QStringLiteral("version");
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QVariant> reply = *watcher;
        // Folders can be chosen since the third version.
        setAvailable(!reply.isError() && reply.value().toUInt() >= 3);
    });
    // A portal that dies never answers.
    const auto *portal = new QDBusServiceWatcher(DesktopPortal::service(), m_bus,
                                                 QDBusServiceWatcher::WatchForUnregistration, this);
    connect(portal, &QDBusServiceWatcher::serviceUnregistered, this, [this] {
        for (const QString &path : m_requests.keys()) {
            refuse(path);
        }
    });
}

void PortalFolderChooser::setAvailable(bool available) {
    if (m_available != available) {
        m_available = available;
        Q_EMIT availabilityChanged();
    }
}

QString PortalFolderChooser::newToken() {
    return QStringLiteral("mosa_%1_%2").arg(++m_tokens).arg(QRandomGenerator::global()->generate());
}

void PortalFolderChooser::listen(const QString &path, bool on) {
    const QString signal = QStringLiteral("Response");
    if (on) {
        m_bus.connect(DesktopPortal::service(), path, requestInterface, signal, this,
                      SLOT(respond(QDBusMessage)));
    } else {
        m_bus.disconnect(DesktopPortal::service(), path, requestInterface, signal, this,
                         SLOT(respond(QDBusMessage)));
    }
}

QFuture<std::optional<FileURL>> PortalFolderChooser::choose(const QString &title, const QString &prompt) {
    if (!m_available) {
        return m_fallback.choose(title, prompt);
    }
    const QString token = newToken();
    const QString sender = m_bus.baseService().mid(1).replace(QLatin1Char('.'), QLatin1Char('_'));
    const QString path =
        DesktopPortal::path() + QLatin1String("/request/") + sender + QLatin1Char('/') + token;
    // Before the call, so that no answer is missed.
    listen(path, true);
    auto promise = std::make_shared<QPromise<Answer>>();
    promise->start();
    m_requests.insert(path, {promise, title, prompt});

    QDBusMessage call = DesktopPortal::call(chooserInterface, QStringLiteral("OpenFile"));
    call << m_parentWindow() << title
         << QVariantMap{{QStringLiteral("handle_token"), token},
                        {QStringLiteral("accept_label"), plainLabel(prompt)},
                        {QStringLiteral("modal"), true},
                        {QStringLiteral("multiple"), false},
                        {QStringLiteral("directory"), true}};
    auto *watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, path] {
        watcher->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
        if (reply.isError()) {
            refuse(path);
        } else {
            follow(path, reply.value().path());
        }
    });
    return promise->future();
}

void PortalFolderChooser::follow(const QString &expected, const QString &actual) {
    if (actual == expected || !m_requests.contains(expected)) {
        return;
    }
    listen(expected, false);
    listen(actual, true);
    m_requests.insert(actual, m_requests.take(expected));
}

void PortalFolderChooser::refuse(const QString &path) {
    listen(path, false);
    const Request request = m_requests.take(path);
    setAvailable(false);
    if (!request.promise) {
        return;
    }
    m_fallback.choose(request.title, request.prompt)
        .then(this,
              [promise = request.promise](const Answer &answer) {
                  promise->addResult(answer);
                  promise->finish();
              })
        .onCanceled(this, [promise = request.promise] {
            promise->future().cancel();
            promise->finish();
        });
}

void PortalFolderChooser::respond(const QDBusMessage &message) {
    const Request request = m_requests.take(message.path());
    if (!request.promise) {
        return;
    }
    listen(message.path(), false);
    request.promise->addResult(chosenFolder(message));
    request.promise->finish();
}
