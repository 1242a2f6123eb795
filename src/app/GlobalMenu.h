#pragma once

#include "DBusMenuNode.h"

#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <QWindow>

class MenuCommand;
class MenuCommands;

/// The program's menus in the desktop's global menu bar, where there is one: com.canonical.dbusmenu on the
/// session bus, announced to the registrar of menu bars. Only windows of X11 can be announced. Main thread.
class GlobalMenu : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version CONSTANT)
    Q_PROPERTY(QString Status READ status CONSTANT)
    Q_PROPERTY(QString TextDirection READ textDirection CONSTANT)

public:
    /// The commands and the window outlive this.
    GlobalMenu(QDBusConnection bus, const MenuCommands &commands, const QWindow &window,
               QObject *parent = nullptr);
    ~GlobalMenu() override;

    static const QString path;

public Q_SLOTS:
    // The interface's own spelling.
    uint GetLayout(int parentId, int depth, const QStringList &names, DBusMenuNode &layout);
    QList<DBusMenuProperties> GetGroupProperties(const QList<int> &ids, const QStringList &names);
    QDBusVariant GetProperty(int id, const QString &name);
    void Event(int id, const QString &eventId, const QDBusVariant &data, uint timestamp);
    bool AboutToShow(int id);

Q_SIGNALS:
    void LayoutUpdated(uint revision, int parent);
    void ItemsPropertiesUpdated(const QList<DBusMenuProperties> &updated,
                                const QList<DBusMenuProperties> &removed);

private:
    uint version() const { return 3; }
    QString status() const { return QStringLiteral("normal"); }
    QString textDirection() const { return QStringLiteral("ltr"); }

    void announce();
    void changed();
    DBusMenuNode bar() const;
    DBusMenuNode node(int id) const;
    MenuCommand *command(int id) const;

    QDBusConnection m_bus;
    const MenuCommands &m_commands;
    const QWindow &m_window;
    uint m_revision = 1;
};
