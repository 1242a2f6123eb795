#include "MosaApp.h"

#include "AppState.h"
#include "ApplicationIdentity.h"
#include "BackgroundTask.h"
#include "Codecs.h"
#include "DesktopFileManager.h"
#include "DirectoryTest.h"
#include "FolderScanner.h"
#include "GlobalMenu.h"
#include "MPVFunctions.h"
#include "MainWindow.h"
#include "MenuCommands.h"
#include "MosaUpdaterController.h"
#include "PortalFolderChooser.h"
#include "SettingsPreferences.h"
#include "SheetAlertPresenter.h"
#include "SheetFolderChooser.h"
#include "StagedFile.h"
#include "ThumbnailService.h"

#include <QGuiApplication>

using namespace std::chrono_literals;

namespace {

constexpr auto endLimit = 2000ms;
constexpr int tidyMilliseconds = 500;

// The window's name for the portals; they know windows of Wayland by a handle that the toolkit keeps.
QString portalName(QWindow *window) {
    if (window == nullptr || QGuiApplication::platformName() != QLatin1String("xcb")) {
        return {};
    }
    return QStringLiteral("x11:") + QString::number(window->winId(), 16);
}

/// What the window's first frame does without, and what has to be there before a folder is shown: while a
/// library is loaded, no thread can be started, and whoever starts one waits.
void loadLibraries() {
    BackgroundTask::run<void>([](QPromise<void> &) {
        Codecs::loaded();
        MPVFunctions::real();
    });
}

} // namespace

MosaApp::MosaApp()
    : m_sessionBus(QDBusConnection::sessionBus()),
      m_instance(m_sessionBus, ApplicationIdentity::applicationId, ApplicationIdentity::objectPath) {
    m_appDelegate.applicationWillFinishLaunching();
    connect(&m_instance, &SingleInstance::running, this, &MosaApp::openWindow);
    connect(&m_instance, &SingleInstance::handedOver, this, [] { QCoreApplication::quit(); });
    connectDesktop();
}

MosaApp::~MosaApp() = default;

void MosaApp::start(const std::optional<FileURL> &folder) {
    m_firstFolder = folder;
    m_instance.start(folder);
}

void MosaApp::connectDesktop() {
    DesktopApplication &desktop = m_instance.application();
    connect(&desktop, &DesktopApplication::activated, this, &MosaApp::activate);
    connect(&desktop, &DesktopApplication::openRequested, this, [this](const QList<QByteArray> &uris) {
        QList<FileURL> urls;
        for (const QByteArray &uri : uris) {
            if (const auto url = FileURL::fromArgument(uri, QByteArray("/"))) {
                urls.append(*url);
            }
        }
        open(urls);
    });
    connect(&desktop, &DesktopApplication::actionRequested, this, [this](const QString &action) {
        m_firstAction = action;
        if (m_window) {
            triggerFirstAction();
        }
    });
}

void MosaApp::makeState() {
    m_preferences = std::make_unique<SettingsPreferences>();
    m_fileManager = std::make_unique<DesktopFileManager>(m_sessionBus);
    m_alerts = std::make_unique<SheetAlertPresenter>();
    m_sheetChooser = std::make_unique<SheetFolderChooser>();
    m_chooser = std::make_unique<PortalFolderChooser>(
        m_sessionBus, [this] { return portalName(m_window.get()); }, *m_sheetChooser);
    AppState::Services services;
    services.scan = [](const FileURL &url) { return FolderScanner::scan(url); };
    services.isDirectory = DirectoryTest::isDirectory;
    services.trash = FileOperations::trash;
    services.transfer = FileOperations::transfer;
    services.chooser = m_chooser.get();
    services.alerts = m_alerts.get();
    services.preferences = m_preferences.get();
    m_state = std::make_unique<AppState>(std::move(services));
    m_updater = std::make_unique<MosaUpdaterController>(QDBusConnection::systemBus(),
                                                        ApplicationIdentity::packageName);
}

void MosaApp::openWindow() {
    makeState();
    m_window = std::make_unique<MainWindow>(m_preferences.get(), m_fileManager.get());
    m_menuCommands = std::make_unique<MenuCommands>(
        MenuCommands::Targets{*m_state, *m_updater, *m_fileManager, *m_window});
    m_window->setInitialProperties(
        {{QStringLiteral("state"), QVariant::fromValue(m_state.get())},
         {QStringLiteral("host"), QVariant::fromValue(m_window.get())},
         {QStringLiteral("menuCommands"), QVariant::fromValue(m_menuCommands.get())},
         {QStringLiteral("updater"), QVariant::fromValue(m_updater.get())},
         {QStringLiteral("alerts"), QVariant::fromValue(m_alerts.get())},
         {QStringLiteral("chooser"), QVariant::fromValue(m_sheetChooser.get())}});
    connect(m_window.get(), &QQuickWindow::frameSwapped, this, loadLibraries,
            Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    m_window->setSource(QUrl(QStringLiteral("qrc:/qt/qml/Mosa/App/MainScene.qml")));
    m_window->open();
    m_globalMenu = std::make_unique<GlobalMenu>(m_sessionBus, *m_menuCommands, *m_window);
    if (m_firstFolder) {
        m_appDelegate.applicationOpen({*m_firstFolder});
    }
    triggerFirstAction();
}

void MosaApp::open(const QList<FileURL> &urls) {
    if (m_window) {
        m_appDelegate.applicationOpen(urls);
    } else if (!urls.isEmpty()) {
        m_firstFolder = urls.constFirst();
    }
}

void MosaApp::triggerFirstAction() {
    if (MenuCommand *command = m_menuCommands->command(std::exchange(m_firstAction, {}))) {
        command->trigger();
    }
}

void MosaApp::activate(const QByteArray &token) {
    if (!m_window) {
        return;
    }
    if (!token.isEmpty()) {
        // Where the window system's plugin looks for it.
        qputenv("XDG_ACTIVATION_TOKEN", token);
    }
    if (m_window->windowStates().testFlag(Qt::WindowMinimized)) {
        m_window->setWindowStates(m_window->windowStates() & ~Qt::WindowMinimized);
    }
    m_window->raise();
    m_window->requestActivate();
}

void MosaApp::quit() {
    if (m_window) {
        m_window->close();
    }
    // Also when there is no window yet, or none that could be the last one closed.
    QCoreApplication::quit();
}

bool MosaApp::end() {
    m_globalMenu.reset();
    m_window.reset();
    m_menuCommands.reset();
    m_updater.reset();
    m_state.reset();
    m_chooser.reset();
    m_sheetChooser.reset();
    m_alerts.reset();
    m_fileManager.reset();
    m_preferences.reset();
    const bool thumbnailsEnded = ThumbnailService::finishShared(endLimit);
    bool tasksEnded = BackgroundTask::finish(endLimit);
    if (!tasksEnded) {
        // A copy that waits for a slow disk cannot tidy up by itself. The folder may hang as well.
        BackgroundTask::run<void>([](QPromise<void> &) { StagedFile::removeAll(); });
        // Not finish(), which would drop it again before a thread takes it.
        tasksEnded = BackgroundTask::pool().waitForDone(tidyMilliseconds);
    }
    return tasksEnded && thumbnailsEnded;
}
