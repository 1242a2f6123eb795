#pragma once

#include "FileURL.h"
#include "FramePacing.h"
#include "WindowFrameAutosave.h"

#include <QPointF>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickView>

class FileManager;
class Preferences;

/// The program's one window: without the desktop's title bar, so that the scene reaches the top edge, and
/// moved by every spot of the scene where nothing else takes the press.
///
/// QML reaches it as `Window.window as MainWindow`. Full screen is announced through the default
/// NotificationCentre (see NotificationNames.h), whoever changes it.
class MainWindow : public QQuickView {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("one for the program's run, made by the application")
    Q_PROPERTY(bool fullScreen READ isFullScreen NOTIFY stateChanged)
    Q_PROPERTY(bool maximised READ isMaximised NOTIFY stateChanged)

public:
    /// The preferences keep the window's frame; both outlive the window. What is missing is not done.
    explicit MainWindow(Preferences *preferences = nullptr, FileManager *fileManager = nullptr);

    /// Shows the window where it was when the program last ran.
    void open();

    bool isFullScreen() const { return windowStates().testFlag(Qt::WindowFullScreen); }
    bool isMaximised() const { return windowStates().testFlag(Qt::WindowMaximized) && !isFullScreen(); }

    Q_INVOKABLE void toggleFullScreen();
    Q_INVOKABLE void toggleMaximised();
    Q_INVOKABLE void minimise();
    Q_INVOKABLE void resizeAt(Qt::Edges edges) { startSystemResize(edges); }

    /// For the views, see FileManager.
    Q_INVOKABLE void showInFileManager(const FileURL &url);
    Q_INVOKABLE void openInDefaultApp(const FileURL &url);

    static constexpr QSize minimumFrame{920, 620};
    static constexpr QSize firstFrame{1440, 900};

Q_SIGNALS:
    /// The window is full screen, maximised or neither, now differently from before.
    void stateChanged();
    /// The user asks for the window's menu at a point of the window.
    void menuRequested(QPointF position);

protected:
    bool event(QEvent *event) override;

private:
    void followWindowState();
    void dragBackground(QEvent *event);
    /// Who has the pointer of an event: an item, a handler, or the window itself where nothing wants it.
    QObject *takerOf(const QPointerEvent &event);
    void notePress(const QPointerEvent &press);

    WindowFrameAutosave m_autosave;
    FramePacing m_pacing{*this};
    FileManager *m_fileManager;
    bool m_announcedFullScreen = false;
    /// Where the left button went down on the bare background, until it is released or moves the window.
    std::optional<QPointF> m_press;
    /// Who got the last press, and whether it got the one before, too.
    QPointer<QObject> m_taker;
    bool m_takenAgain = false;
    int m_eventDepth = 0;
};
