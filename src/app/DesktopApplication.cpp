#include "DesktopApplication.h"

namespace {

QByteArray token(const QVariantMap &platformData) {
    const QVariant modern = platformData.value(QStringLiteral("activation-token"));
    return (modern.isValid() ? modern : platformData.value(QStringLiteral("desktop-startup-id")))
        .toString()
        .toUtf8();
}

} // namespace

void DesktopApplication::Activate(const QVariantMap &platformData) {
    Q_EMIT activated(token(platformData));
}

void DesktopApplication::Open(const QStringList &uris, const QVariantMap &platformData) {
    Q_EMIT activated(token(platformData));
    QList<QByteArray> list;
    for (const QString &uri : uris) {
        list.append(uri.toUtf8());
    }
    if (!list.isEmpty()) {
        Q_EMIT openRequested(list);
    }
}

void DesktopApplication::ActivateAction(const QString &action, const QVariantList &,
                                        const QVariantMap &platformData) {
    Q_EMIT activated(token(platformData));
    Q_EMIT actionRequested(action);
}
