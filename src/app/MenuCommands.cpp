#include "MenuCommands.h"

#include "AppState.h"
#include "ApplicationIdentity.h"
#include "FileManager.h"
#include "KeyPress.h"
#include "MainWindow.h"
#include "MosaUpdaterController.h"

#include <algorithm>

MenuCommands::MenuCommands(const Targets &targets, QObject *parent) : QObject(parent), m_targets(targets) {
    addApplicationMenu();
    addFileMenu();
    addViewMenu();
    addHelpMenu();
    addQuit();
    m_targets.window.installEventFilter(this);
}

MenuCommand *MenuCommands::add(MenuCommand::Menu menu, const QString &name, const QString &title,
                               const QKeySequence &shortcut) {
    auto *command = new MenuCommand(menu, name, title, shortcut, this);
    m_commands.append(command);
    return command;
}

MenuCommand *MenuCommands::command(const QString &name) const {
    const auto found = std::ranges::find(m_commands, name, &MenuCommand::name);
    return found == m_commands.end() ? nullptr : *found;
}

bool MenuCommands::eventFilter(QObject *, QEvent *event) {
    if (event->type() != QEvent::KeyPress) {
        return false;
    }
    const KeyPress press = KeyPress::fromEvent(*static_cast<QKeyEvent *>(event));
    if (!press.command || press.characters.isEmpty()) {
        return false;
    }
    const QKeySequence keys(Qt::CTRL | Qt::Key(press.characters.front().toUpper().unicode()));
    const auto found = std::ranges::find(m_commands, keys, &MenuCommand::keys);
    if (found == m_commands.end()) {
        return false;
    }
    (*found)->trigger();
    return true;
}

void MenuCommands::setSuspended(bool suspended) {
    if (m_suspended == suspended) {
        return;
    }
    m_suspended = suspended;
    for (MenuCommand *command : m_commands) {
        command->setSuspended(suspended && command != m_quit);
    }
    Q_EMIT suspendedChanged();
}

void MenuCommands::addApplicationMenu() {
    MenuCommand *about = add(MenuCommand::Application, QStringLiteral("about"), tr("About Mosa"));
    connect(about, &MenuCommand::triggered, this, &MenuCommands::aboutRequested);

    MenuCommand *updates =
        add(MenuCommand::Application, QStringLiteral("check-for-updates"), tr("Check for Updates…"));
    MosaUpdaterController &updater = m_targets.updater;
    const auto follow = [updates, &updater] { updates->setEnabled(updater.canCheckForUpdates()); };
    follow();
    connect(&updater, &MosaUpdaterController::canCheckForUpdatesChanged, updates, follow);
    connect(updates, &MenuCommand::triggered, &updater, &MosaUpdaterController::checkForUpdates);
}

// Last, where the eye looks for it in a menu that shows everything; in a menu bar still the application's.
void MenuCommands::addQuit() {
    m_quit = add(MenuCommand::Application, QStringLiteral("quit"), tr("Quit Mosa"),
                 QKeySequence(Qt::CTRL | Qt::Key_Q));
    connect(m_quit, &MenuCommand::triggered, &m_targets.window, &QWindow::close);
}

void MenuCommands::addFileMenu() {
    MenuCommand *open = add(MenuCommand::File, QStringLiteral("open-folder"), tr("Open Folder…"),
                            QKeySequence(Qt::CTRL | Qt::Key_O));
    connect(open, &MenuCommand::triggered, &m_targets.state, &AppState::chooseFolder);
}

void MenuCommands::addViewMenu() {
    AppState &state = m_targets.state;
    MenuCommand *back = add(MenuCommand::View, QStringLiteral("back"), tr("Back"),
                            QKeySequence(Qt::CTRL | Qt::Key_BracketLeft));
    const auto followHistory = [back, &state] { back->setEnabled(state.canNavigateBack()); };
    followHistory();
    connect(&state, &AppState::historyChanged, back, followHistory);
    connect(back, &MenuCommand::triggered, &state, &AppState::navigateBack);

    // "F" alone does the same, before any menu sees it.
    MainWindow &window = m_targets.window;
    MenuCommand *fullScreen = add(MenuCommand::View, QStringLiteral("full-screen"), tr("Enter Full Screen"),
                                  QKeySequence(Qt::Key_F11));
    connect(&window, &MainWindow::stateChanged, fullScreen, [fullScreen, &window] {
        fullScreen->setTitle(window.isFullScreen() ? tr("Exit Full Screen") : tr("Enter Full Screen"));
    });
    connect(fullScreen, &MenuCommand::triggered, &window, &MainWindow::toggleFullScreen);
}

void MenuCommands::addHelpMenu() {
    FileManager &fileManager = m_targets.fileManager;
    const auto opening = [this, &fileManager](const QString &name, const QString &title, const QUrl &url) {
        MenuCommand *command = add(MenuCommand::Help, name, title);
        connect(command, &MenuCommand::triggered, this, [&fileManager, url] {
            if (url.isValid()) {
                fileManager.openUrl(url);
            }
        });
    };
    opening(QStringLiteral("help"), tr("Mosa Help"), ApplicationIdentity::helpPage());
    opening(QStringLiteral("feedback"), tr("Send Mosa Feedback…"), ApplicationIdentity::feedbackMail());
}
