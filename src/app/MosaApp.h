#pragma once

#include "FileURL.h"
#include "MosaAppDelegate.h"
#include "SingleInstance.h"

#include <memory>
#include <optional>

class AppState;
class FileManager;
class GlobalMenu;
class MainWindow;
class MenuCommands;
class MosaUpdaterController;
class PortalFolderChooser;
class Preferences;
class SheetAlertPresenter;
class SheetFolderChooser;

/// Owns the program's long-lived objects for the whole run.
///
/// The end, in order: the window with its scene, whose views shut their players down; the state, which gives
/// up its scan and file work; the preferences, which are written out; the thumbnails; then the tasks that
/// still run are waited for a moment.
class MosaApp : public QObject {
    Q_OBJECT

public:
    MosaApp();
    ~MosaApp() override;

    /// Opens the window and the folder, or hands the folder to the Mosa that runs already and quits.
    void start(const std::optional<FileURL> &folder);
    void quit();
    /// After the event loop. False when some file system does not answer: the process is then to end without
    /// unwinding the threads that wait for it.
    bool end();

private:
    void makeState();
    void openWindow();
    void connectDesktop();
    void activate(const QByteArray &token);
    void open(const QList<FileURL> &urls);
    void triggerFirstAction();

    QDBusConnection m_sessionBus;
    MosaAppDelegate m_appDelegate;
    SingleInstance m_instance;
    /// What the desktop asks for before there is a window.
    std::optional<FileURL> m_firstFolder;
    QString m_firstAction;
    std::unique_ptr<Preferences> m_preferences;
    std::unique_ptr<FileManager> m_fileManager;
    std::unique_ptr<SheetAlertPresenter> m_alerts;
    std::unique_ptr<SheetFolderChooser> m_sheetChooser;
    std::unique_ptr<PortalFolderChooser> m_chooser;
    std::unique_ptr<AppState> m_state;
    std::unique_ptr<MosaUpdaterController> m_updater;
    std::unique_ptr<MainWindow> m_window;
    std::unique_ptr<MenuCommands> m_menuCommands;
    std::unique_ptr<GlobalMenu> m_globalMenu;
};
