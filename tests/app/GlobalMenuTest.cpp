#include "GlobalMenu.h"

#include "AppState.h"
#include "FileManager.h"
#include "MainWindow.h"
#include "MenuCommands.h"
#include "MosaUpdaterController.h"
#include "PrivateBus.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QSignalSpy>
#include <QTest>

namespace {

constexpr int limit = 30000;

class NoFileManager : public FileManager {
public:
    void showInFileManager(const FileURL &) override {}
    void openInDefaultApp(const FileURL &) override {}
    void openUrl(const QUrl &) override {}
};

} // namespace

class GlobalMenuTest : public QObject {
    Q_OBJECT

private:
    // The answer of the menu, asked as a desktop does.
    QDBusMessage ask(PrivateBus &bus, const QDBusConnection &server, const QString &method,
                     const QVariantList &arguments) {
        QDBusConnection client = bus.connect();
        QDBusMessage call = QDBusMessage::createMethodCall(server.baseService(), GlobalMenu::path,
                                                           QStringLiteral("com.canonical.dbusmenu"), method);
        call.setArguments(arguments);
        QDBusPendingCallWatcher watcher(client.asyncCall(call));
        QSignalSpy finished(&watcher, &QDBusPendingCallWatcher::finished);
        return finished.wait(limit) ? watcher.reply() : QDBusMessage();
    }

private Q_SLOTS:
    void tellsAndTriggersCommands() {
        if (!PrivateBus::isPossible()) {
            QSKIP("no message bus is installed");
        }
        PrivateBus bus;
        AppState state{AppState::Services{}};
        MosaUpdaterController updater(QDBusConnection(QStringLiteral("nothing")), QStringLiteral("mosa"));
        NoFileManager files;
        MainWindow window;
        MenuCommands commands({state, updater, files, window});
        const QDBusConnection server = bus.connect();
        const GlobalMenu menu(server, commands, window);

        const QDBusMessage reply = ask(bus, server, QStringLiteral("GetLayout"), {0, -1, QStringList()});
        QCOMPARE(reply.signature(), QStringLiteral("u(ia{sv}av)"));
        const auto bar = qdbus_cast<DBusMenuNode>(reply.arguments()[1]);
        QStringList titles;
        int about = 0;
        for (const DBusMenuNode &top : bar.children) {
            titles.append(top.properties.value(QStringLiteral("label")).toString());
            for (const DBusMenuNode &entry : top.children) {
                const QString title = entry.properties.value(QStringLiteral("label")).toString();
                titles.append(QStringLiteral("- ") + title);
                about = title == QStringLiteral("About Mosa") ? entry.id : about;
                QCOMPARE(entry.properties.value(QStringLiteral("enabled")).toBool(),
                         title != QStringLiteral("Back") && !title.startsWith(QStringLiteral("Check")));
            }
        }
        QCOMPARE(titles,
                 QStringList({QStringLiteral("Mosa"), QStringLiteral("- About Mosa"),
                              QStringLiteral("- Check for Updates…"), QStringLiteral("- Quit Mosa"),
                              QStringLiteral("File"), QStringLiteral("- Open Folder…"),
                              QStringLiteral("View"), QStringLiteral("- Back"),
                              QStringLiteral("- Enter Full Screen"), QStringLiteral("Help"),
                              QStringLiteral("- Mosa Help"), QStringLiteral("- Send Mosa Feedback…")}));

        QSignalSpy asked(&commands, &MenuCommands::aboutRequested);
        ask(bus, server, QStringLiteral("Event"),
            {about, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0U});
        QTRY_COMPARE_WITH_TIMEOUT(asked.size(), 1, limit);
    }
};

QTEST_MAIN(GlobalMenuTest)
#include "GlobalMenuTest.moc"
