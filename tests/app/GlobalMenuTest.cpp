#include "GlobalMenu.h"

#include "AppState.h"
#include "DesktopFileManager.h"
#include "MainWindow.h"
#include "MenuCommands.h"
#include "MosaUpdaterController.h"
#include "PrivateBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class GlobalMenuTest : public QObject {
    Q_OBJECT

    // The answer of the menu, asked as a desktop does.
    static QDBusMessage ask(PrivateBus &bus, const QDBusConnection &server, const QString &method,
                            const QVariantList &arguments) {
        QDBusConnection client = bus.connect();
        QDBusMessage call = QDBusMessage::createMethodCall(server.baseService(), GlobalMenu::path,
                                                           u"com.canonical.dbusmenu"_s, method);
        call.setArguments(arguments);
        QDBusPendingCallWatcher watcher(client.asyncCall(call));
        QSignalSpy finished(&watcher, &QDBusPendingCallWatcher::finished);
        return finished.wait(PrivateBus::patience) ? watcher.reply() : QDBusMessage();
    }

private Q_SLOTS:
    void tellsAndTriggersCommands() {
        PrivateBus bus;
        AppState state{AppState::Services{}};
        MosaUpdaterController updater(QDBusConnection(u"nothing"_s), u"mosa"_s);
        DesktopFileManager files(
            QDBusConnection(u"nothing"_s), [](const QString &) {}, false);
        MainWindow window;
        MenuCommands commands({state, updater, files, window});
        const QDBusConnection server = bus.connect();
        const GlobalMenu menu(server, commands, window);

        const QDBusMessage reply = ask(bus, server, u"GetLayout"_s, {0, -1, QStringList()});
        QCOMPARE(reply.signature(), u"u(ia{sv}av)"_s);
        const auto bar = qdbus_cast<DBusMenuNode>(reply.arguments()[1]);
        QCOMPARE(bar.children.size(), 4);
        int about = 0;
        QStringList disabled;
        for (const DBusMenuNode &top : bar.children) {
            for (const DBusMenuNode &entry : top.children) {
                const QString title = entry.properties.value(u"label"_s).toString();
                about = title == u"About Mosa"_s ? entry.id : about;
                if (!entry.properties.value(u"enabled"_s).toBool()) {
                    disabled.append(title);
                }
            }
        }
        QCOMPARE(disabled, QStringList({u"Check for Updates…"_s, u"Back"_s}));

        QSignalSpy asked(&commands, &MenuCommands::aboutRequested);
        ask(bus, server, u"Event"_s, {about, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)), 0U});
        QTRY_COMPARE_WITH_TIMEOUT(asked.size(), 1, PrivateBus::patience);
    }
};

QTEST_MAIN(GlobalMenuTest)
#include "GlobalMenuTest.moc"
