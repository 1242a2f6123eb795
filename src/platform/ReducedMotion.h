#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <array>

/// Whether the user asked the desktop for less movement on the screen, by the desktop portal's settings: the
/// one of its own, or that of the desktops that had a switch for animations before there was one. False where
/// there is no portal. Main thread; the answer comes later, and follows what the user changes.
class ReducedMotion : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool active READ isActive NOTIFY activeChanged)

public:
    explicit ReducedMotion(QDBusConnection bus, QObject *parent = nullptr);

    bool isActive() const { return m_active; }

Q_SIGNALS:
    void activeChanged();

private Q_SLOTS:
    /// Group, key and value.
    void settingChanged(const QDBusMessage &message);

private:
    void ask();
    void take(const QString &group, const QString &key, const QVariant &value);

    QDBusConnection m_bus;
    /// What each of the settings that speak of movement says.
    std::array<bool, 3> m_reduced{};
    bool m_active = false;
};
