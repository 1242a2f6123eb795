#include "GlobalMenu.h"

#include "MenuCommands.h"

#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>
#include <QGuiApplication>

const QString GlobalMenu::path = QStringLiteral("/MenuBar");

namespace {

const QString registrar = QStringLiteral("com.canonical.AppMenu.Registrar");

// Entries are numbered by what they are: the bar, its menus, the commands in their order.
constexpr int firstMenuId = 1;
constexpr int firstCommandId = 100;
constexpr MenuCommand::Menu menus[] = {MenuCommand::Application, MenuCommand::File, MenuCommand::View,
                                       MenuCommand::Help};

QString menuTitle(MenuCommand::Menu menu) {
    switch (menu) {
    case MenuCommand::Application:
        return QStringLiteral("Mosa");
    case MenuCommand::File:
        return GlobalMenu::tr("File");
    case MenuCommand::View:
        return GlobalMenu::tr("View");
    case MenuCommand::Help:
        return GlobalMenu::tr("Help");
    }
    return {};
}

// An underscore marks the access key.
QString label(QString text) {
    return text.replace(QLatin1Char('_'), QLatin1String("__"));
}

// "Ctrl+O" as the keys by their names in the interface.
QVariant keys(const QKeySequence &shortcut) {
    QStringList names = shortcut.toString(QKeySequence::PortableText).split(QLatin1Char('+'));
    names.replaceInStrings(QStringLiteral("Ctrl"), QStringLiteral("Control"));
    return QVariant::fromValue(QList<QStringList>{names});
}

QVariantMap properties(const MenuCommand &command) {
    QVariantMap result{{QStringLiteral("label"), label(command.title())},
                       {QStringLiteral("enabled"), command.isEnabled()}};
    if (!command.keys().isEmpty()) {
        result.insert(QStringLiteral("shortcut"), keys(command.keys()));
    }
    return result;
}

void keepOnly(QVariantMap &map, const QStringList &names) {
    if (!names.isEmpty()) {
        map.removeIf([&](QVariantMap::iterator entry) { return !names.contains(entry.key()); });
    }
}

// Depth counts the levels below; negative stands for all.
void cut(DBusMenuNode &node, int depth, const QStringList &names) {
    keepOnly(node.properties, names);
    if (depth == 0) {
        node.children.clear();
    }
    for (DBusMenuNode &child : node.children) {
        cut(child, depth - 1, names);
    }
}

const DBusMenuNode *find(const DBusMenuNode &node, int id) {
    if (node.id == id) {
        return &node;
    }
    for (const DBusMenuNode &child : node.children) {
        if (const DBusMenuNode *found = find(child, id)) {
            return found;
        }
    }
    return nullptr;
}

} // namespace

GlobalMenu::GlobalMenu(QDBusConnection bus, const MenuCommands &commands, const QWindow &window,
                       QObject *parent)
    : QObject(parent), m_bus(std::move(bus)), m_commands(commands), m_window(window) {
    if (!m_bus.isConnected()) {
        return;
    }
    registerDBusMenuTypes();
    m_bus.registerObject(path, this, QDBusConnection::ExportAllContents);
    for (const MenuCommand *entry : m_commands.commands()) {
        connect(entry, &MenuCommand::titleChanged, this, &GlobalMenu::changed);
        connect(entry, &MenuCommand::enabledChanged, this, &GlobalMenu::changed);
    }
    auto *watcher =
        new QDBusServiceWatcher(registrar, m_bus, QDBusServiceWatcher::WatchForRegistration, this);
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, &GlobalMenu::announce);
    announce();
}

GlobalMenu::~GlobalMenu() {
    if (m_bus.isConnected()) {
        m_bus.unregisterObject(path);
    }
}

void GlobalMenu::announce() {
    if (QGuiApplication::platformName() != QLatin1String("xcb")) {
        return;
    }
    // Without a registrar nobody answers, and nobody is waited for.
    QDBusMessage call =
        QDBusMessage::createMethodCall(registrar, QStringLiteral("/com/canonical/AppMenu/Registrar"),
                                       registrar, QStringLiteral("RegisterWindow"));
    call.setAutoStartService(false);
    call << uint(m_window.winId()) << QVariant::fromValue(QDBusObjectPath(path));
    m_bus.asyncCall(call);
}

void GlobalMenu::changed() {
    Q_EMIT LayoutUpdated(++m_revision, 0);
}

DBusMenuNode GlobalMenu::bar() const {
    const QString submenu = QStringLiteral("submenu");
    DBusMenuNode result{0, {{QStringLiteral("children-display"), submenu}}, {}};
    for (const MenuCommand::Menu menu : menus) {
        DBusMenuNode node{
            firstMenuId + int(menu),
            {{QStringLiteral("label"), menuTitle(menu)}, {QStringLiteral("children-display"), submenu}},
            {}};
        for (qsizetype i = 0; i < m_commands.commands().size(); ++i) {
            const MenuCommand &entry = *m_commands.commands()[i];
            if (entry.menu() == menu) {
                node.children.append({firstCommandId + int(i), properties(entry), {}});
            }
        }
        result.children.append(node);
    }
    return result;
}

DBusMenuNode GlobalMenu::node(int id) const {
    const DBusMenuNode whole = bar();
    const DBusMenuNode *found = find(whole, id);
    return found != nullptr ? *found : DBusMenuNode{id, {}, {}};
}

MenuCommand *GlobalMenu::command(int id) const {
    return m_commands.commands().value(id - firstCommandId, nullptr);
}

uint GlobalMenu::GetLayout(int parentId, int depth, const QStringList &names, DBusMenuNode &layout) {
    layout = node(parentId);
    cut(layout, depth, names);
    return m_revision;
}

QList<DBusMenuProperties> GlobalMenu::GetGroupProperties(const QList<int> &ids, const QStringList &names) {
    QList<DBusMenuProperties> result;
    for (const int id : ids) {
        DBusMenuProperties item{id, node(id).properties};
        keepOnly(item.properties, names);
        result.append(item);
    }
    return result;
}

QDBusVariant GlobalMenu::GetProperty(int id, const QString &name) {
    // An invalid variant cannot be sent.
    return QDBusVariant(node(id).properties.value(name, QString()));
}

void GlobalMenu::Event(int id, const QString &eventId, const QDBusVariant &, uint) {
    MenuCommand *entry = command(id);
    if (entry != nullptr && eventId == QLatin1String("clicked")) {
        // Later: a command may close the window, and this with it.
        QMetaObject::invokeMethod(entry, &MenuCommand::trigger, Qt::QueuedConnection);
    }
}

bool GlobalMenu::AboutToShow(int) {
    return false;
}
