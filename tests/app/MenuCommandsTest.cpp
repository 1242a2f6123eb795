#include "MenuCommands.h"

#include "AppState.h"
#include "FileManager.h"
#include "MainWindow.h"
#include "MosaUpdaterController.h"
#include "PrivateBus.h"
#include "StandInPackageKit.h"

#include <QSignalSpy>
#include <QTest>
#include <QUrl>

namespace {

constexpr int limit = 30000;

class RecordingFileManager : public FileManager {
public:
    void showInFileManager(const FileURL &) override {}
    void openInDefaultApp(const FileURL &) override {}
    void openUrl(const QUrl &url) override { opened.append(url.toString(QUrl::FullyEncoded)); }
    QStringList opened;
};

/// A window of commands over a state without a world.
struct Fixture {
    explicit Fixture(const QDBusConnection &bus = QDBusConnection(QStringLiteral("nothing")))
        : updater(bus, QStringLiteral("mosa")) {}
    AppState state{AppState::Services{}};
    MosaUpdaterController updater;
    RecordingFileManager files;
    MainWindow window;
    MenuCommands commands{{state, updater, files, window}};
};

} // namespace

class MenuCommandsTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void offers_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<MenuCommand::Menu>("menu");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("shortcut");
        QTest::addColumn<bool>("enabled");
        const auto row = [](const char *name, MenuCommand::Menu menu, const QString &title,
                            const char *shortcut, bool enabled) {
            QTest::newRow(name) << QString::fromLatin1(name) << menu << title << QString::fromLatin1(shortcut)
                                << enabled;
        };
        row("about", MenuCommand::Application, QStringLiteral("About Mosa"), "", true);
        row("check-for-updates", MenuCommand::Application, QStringLiteral("Check for Updates…"), "", false);
        row("open-folder", MenuCommand::File, QStringLiteral("Open Folder…"), "Ctrl+O", true);
        row("back", MenuCommand::View, QStringLiteral("Back"), "Ctrl+[", false);
        row("full-screen", MenuCommand::View, QStringLiteral("Enter Full Screen"), "F11", true);
        row("help", MenuCommand::Help, QStringLiteral("Mosa Help"), "", true);
        row("feedback", MenuCommand::Help, QStringLiteral("Send Mosa Feedback…"), "", true);
        row("quit", MenuCommand::Application, QStringLiteral("Quit Mosa"), "Ctrl+Q", true);
    }

    void offers() {
        QFETCH(QString, name);
        const Fixture fixture;
        const MenuCommand *command = fixture.commands.command(name);
        QVERIFY(command != nullptr);
        QTEST(command->menu(), "menu");
        QTEST(command->title(), "title");
        QTEST(command->shortcut(), "shortcut");
        QTEST(command->isEnabled(), "enabled");
    }

    void opensHelpAndFeedback() {
        Fixture fixture;
        fixture.commands.command(QStringLiteral("help"))->trigger();
        fixture.commands.command(QStringLiteral("feedback"))->trigger();
        QCOMPARE(fixture.files.opened.size(), 2);
        const QString page = fixture.files.opened[0];
        QVERIFY(page.startsWith(QStringLiteral("file:///")) &&
                page.endsWith(QStringLiteral("/share/mosa/help.html")));
        QVERIFY(fixture.files.opened[1].startsWith(QStringLiteral("mailto:")));
        QVERIFY(fixture.files.opened[1].endsWith(QStringLiteral("?subject=Mosa%20Feedback")));
    }

    void followsTheWindow() {
        Fixture fixture;
        fixture.window.open();
        QVERIFY(QTest::qWaitForWindowExposed(&fixture.window));
        MenuCommand *fullScreen = fixture.commands.command(QStringLiteral("full-screen"));
        fullScreen->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(fullScreen->title(), QStringLiteral("Exit Full Screen"), limit);
        fullScreen->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(fullScreen->title(), QStringLiteral("Enter Full Screen"), limit);
        fixture.commands.command(QStringLiteral("quit"))->trigger();
        QTRY_VERIFY_WITH_TIMEOUT(!fixture.window.isVisible(), limit);
    }

    void followsTheUpdater() {
        if (!PrivateBus::isPossible()) {
            QSKIP("no message bus is installed");
        }
        PrivateBus bus;
        StandInPackageKit service(bus.connect());
        service.script.updates = {QStringLiteral("mosa;9.8;amd64;stable")};
        Fixture fixture(bus.connect());
        MenuCommand *check = fixture.commands.command(QStringLiteral("check-for-updates"));
        QSignalSpy enabled(check, &MenuCommand::enabledChanged);
        check->trigger();
        QVERIFY(!fixture.updater.isBusy());
        QTRY_VERIFY_WITH_TIMEOUT(check->isEnabled(), limit);
        QCOMPARE(fixture.updater.title(), QString());
        check->trigger();
        QVERIFY(fixture.updater.isBusy());
        QTRY_VERIFY_WITH_TIMEOUT(fixture.updater.isInstallable(), limit);
        QTRY_COMPARE_WITH_TIMEOUT(enabled.size(), 3, limit);
        QVERIFY(check->isEnabled());
        QVERIFY(fixture.updater.details().contains(QStringLiteral("9.8")));
    }
};

QTEST_MAIN(MenuCommandsTest)
#include "MenuCommandsTest.moc"
