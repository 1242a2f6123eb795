#pragma once

#include <QKeySequence>
#include <QObject>
#include <QtQml/qqmlregistration.h>

/// One thing that the menus offer. Main thread; owned by MenuCommands.
class MenuCommand : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(Menu menu READ menu CONSTANT)
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    /// For a Shortcut; empty for a command without one.
    Q_PROPERTY(QString shortcut READ shortcut CONSTANT)
    /// As the user reads it.
    Q_PROPERTY(QString shortcutText READ shortcutText CONSTANT)
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY enabledChanged)

public:
    enum Menu { Application, File, View, Help };
    Q_ENUM(Menu)

    MenuCommand(Menu menu, QString name, QString title, const QKeySequence &shortcut, QObject *parent);

    Menu menu() const { return m_menu; }
    /// A short name that never changes, for other programs.
    const QString &name() const { return m_name; }
    const QString &title() const { return m_title; }
    void setTitle(const QString &title);
    const QKeySequence &keys() const { return m_shortcut; }
    QString shortcut() const { return m_shortcut.toString(QKeySequence::PortableText); }
    QString shortcutText() const { return m_shortcut.toString(QKeySequence::NativeText); }
    bool isEnabled() const { return m_enabled && !m_suspended; }
    void setEnabled(bool enabled);
    /// Disables the command for a while, whatever setEnabled() says.
    void setSuspended(bool suspended);

    /// Does what the command says; nothing while it is disabled.
    Q_INVOKABLE void trigger();

Q_SIGNALS:
    void titleChanged();
    void enabledChanged();
    void triggered();

private:
    void change(bool &flag, bool value);

    Menu m_menu;
    QString m_name;
    QString m_title;
    QKeySequence m_shortcut;
    bool m_enabled = true;
    bool m_suspended = false;
};
