#pragma once

#include "FolderChooser.h"

#include <QDBusConnection>
#include <QHash>
#include <QObject>

#include <functional>
#include <memory>

class QDBusMessage;

/// FolderChooser through the desktop's own dialog, the FileChooser portal, where there is one; otherwise, and
/// when the portal refuses, through another chooser.
class PortalFolderChooser : public QObject, public FolderChooser {
    Q_OBJECT

public:
    /// The portal's name for the window that the dialog belongs to, "" when it has none.
    using ParentWindow = std::function<QString()>;

    /// Asks the bus for the portal right away; until it answers the fallback is used, which outlives this.
    PortalFolderChooser(QDBusConnection bus, ParentWindow parentWindow, FolderChooser &fallback,
                        QObject *parent = nullptr);

    QFuture<std::optional<FileURL>> choose(const QString &title, const QString &prompt) override;

    bool isAvailable() const { return m_available; }

Q_SIGNALS:
    void availabilityChanged();

private Q_SLOTS:
    void respond(const QDBusMessage &message);

private:
    using Answer = std::optional<FileURL>;
    struct Request {
        std::shared_ptr<QPromise<Answer>> promise;
        QString title;
        QString prompt;
    };

    void setAvailable(bool available);
    void listen(const QString &path, bool on);
    void follow(const QString &expected, const QString &actual);
    void refuse(const QString &path);
    QString newToken();

    QDBusConnection m_bus;
    ParentWindow m_parentWindow;
    FolderChooser &m_fallback;
    bool m_available = false;
    int m_tokens = 0;
    /// Dialogs on the screen, by the object path of the portal's request.
    QHash<QString, Request> m_requests;
};
