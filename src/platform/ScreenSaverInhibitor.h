#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include <optional>

class QDBusPendingCallWatcher;

/// Keeps the screen from blanking and locking while it is active, through the desktop's
/// org.freedesktop.ScreenSaver service.
///
/// Main thread; nothing waits. Ends with this object, and, by the bus, with the process. Where the desktop
/// has no such service, nothing happens.
class ScreenSaverInhibitor : public QObject {
    Q_OBJECT

public:
    /// The reason is shown by desktops that list what keeps them awake.
    ScreenSaverInhibitor(QDBusConnection bus, const QString &reason, QObject *parent = nullptr);
    ~ScreenSaverInhibitor() override;

    bool isActive() const { return m_active; }
    void setActive(bool active);

private:
    void inhibit();
    void onInhibited(QDBusPendingCallWatcher *call);
    void release();

    QDBusConnection m_bus;
    QString m_reason;
    bool m_active = false;
    /// Asked for, and not answered yet.
    bool m_pending = false;
    std::optional<uint> m_cookie;
};
