#pragma once

#include <QObject>
#include <QStringList>
#include <QVariantMap>

/// The program as other programs see it on the session bus: the org.freedesktop.Application interface of the
/// Desktop Entry specification. Main thread.
class DesktopApplication : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    using QObject::QObject;

public Q_SLOTS:
    // The interface's own spelling.
    void Activate(const QVariantMap &platformData);
    void Open(const QStringList &uris, const QVariantMap &platformData);
    void ActivateAction(const QString &action, const QVariantList &parameter,
                        const QVariantMap &platformData);

Q_SIGNALS:
    /// Somebody asks for the window; the token, maybe empty, proves that the user did.
    void activated(const QByteArray &activationToken);
    /// In the order given; never empty.
    void openRequested(const QList<QByteArray> &uris);
    void actionRequested(const QString &action);
};
