#pragma once

#include "MenuCommand.h"

#include <QList>
#include <QQmlListProperty>

class AppState;
class FileManager;
class MainWindow;
class MosaUpdaterController;

/// The program's menu commands, in the order in which menus show them. Main thread.
class MenuCommands : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the application")
    Q_PROPERTY(QQmlListProperty<MenuCommand> commands READ commandList CONSTANT)
    /// A question of the window waits for its answer: until then nothing can be chosen but to quit.
    Q_PROPERTY(bool suspended MEMBER m_suspended WRITE setSuspended NOTIFY suspendedChanged)

public:
    /// What the commands act on; all of it outlives this.
    struct Targets {
        AppState &state;
        MosaUpdaterController &updater;
        FileManager &fileManager;
        MainWindow &window;
    };

    explicit MenuCommands(const Targets &targets, QObject *parent = nullptr);

    const QList<MenuCommand *> &commands() const { return m_commands; }
    /// None for a name that no command has.
    MenuCommand *command(const QString &name) const;
    void setSuspended(bool suspended);

Q_SIGNALS:
    void aboutRequested();
    void suspendedChanged();

protected:
    /// Sees the presses that no shortcut took, and takes those that are one by the place of their keys, for
    /// keyboards without Latin letters.
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    MenuCommand *add(MenuCommand::Menu menu, const QString &name, const QString &title,
                     const QKeySequence &shortcut = {});
    void addApplicationMenu();
    void addFileMenu();
    void addViewMenu();
    void addHelpMenu();
    void addQuit();
    QQmlListProperty<MenuCommand> commandList() { return {this, &m_commands}; }

    Targets m_targets;
    QList<MenuCommand *> m_commands;
    MenuCommand *m_quit = nullptr;
    bool m_suspended = false;
};
