#include "MainWindow.h"

#include "AccessibleScene.h"
#include "DrawingTurns.h"
#include "FileManager.h"
#include "NativeBackground.h"
#include "NotificationCentre.h"
#include "NotificationNames.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QQuickGraphicsConfiguration>
#include <QStyleHints>

namespace {

void post(const QString &name) {
    NotificationCentre::defaultCentre().post(name);
}

} // namespace

MainWindow::MainWindow(Preferences *preferences, FileManager *fileManager)
    : m_autosave(*this, preferences, QStringLiteral("MosaMainWindow")), m_fileManager(fileManager) {
    AccessibleScene::install();
    setTitle(QStringLiteral("Mosa"));
    setFlags(Qt::Window | Qt::FramelessWindowHint);
    setMinimumSize(minimumFrame);
    setColor(QColor::fromRgbF(0.035F, 0.035F, 0.04F));
    QQuickGraphicsConfiguration graphics; // Qt 6.4 leaks the copy of another one that is changed
    // Hardly anything in the window lies behind something else, so that a depth buffer would only cost time.
    graphics.setDepthBufferFor2D(false);
    setGraphicsConfiguration(graphics);
    DrawingTurns::join(*this);
    setResizeMode(QQuickView::SizeRootObjectToView);
    engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    connect(this, &QWindow::windowStateChanged, this, &MainWindow::followWindowState);
}

void MainWindow::open() {
    m_autosave.restore(firstFrame);
    // show() would forget that the window is to be maximised.
    setVisible(true);
}

void MainWindow::toggleFullScreen() {
    const bool enter = !isFullScreen();
    m_autosave.noteFrame();
    post(enter ? NotificationNames::windowWillEnterFullScreen : NotificationNames::windowWillExitFullScreen);
    // The flag alone: a maximised window is maximised again afterwards.
    setWindowStates((windowStates() ^ Qt::WindowFullScreen) & ~Qt::WindowMinimized);
}

void MainWindow::toggleMaximised() {
    if (isFullScreen()) {
        return;
    }
    m_autosave.noteFrame();
    setWindowStates((windowStates() ^ Qt::WindowMaximized) & ~Qt::WindowMinimized);
}

void MainWindow::minimise() {
    setWindowStates(windowStates() | Qt::WindowMinimized);
}

void MainWindow::showInFileManager(const FileURL &url) {
    if (m_fileManager != nullptr) {
        m_fileManager->showInFileManager(url);
    }
}

void MainWindow::openInDefaultApp(const FileURL &url) {
    if (m_fileManager != nullptr) {
        m_fileManager->openInDefaultApp(url);
    }
}

void MainWindow::followWindowState() {
    const bool entered = isFullScreen();
    Q_EMIT stateChanged();
    if (entered == m_announcedFullScreen) {
        return;
    }
    m_announcedFullScreen = entered;
    post(entered ? NotificationNames::windowWillEnterFullScreen
                 : NotificationNames::windowWillExitFullScreen);
    post(entered ? NotificationNames::windowDidEnterFullScreen : NotificationNames::windowDidExitFullScreen);
}

bool MainWindow::event(QEvent *event) {
    if (event->type() == QEvent::Close) {
        m_autosave.save();
    } else if (event->type() == QEvent::PlatformSurface &&
               static_cast<QPlatformSurfaceEvent *>(event)->surfaceEventType() ==
                   QPlatformSurfaceEvent::SurfaceCreated) {
        NativeBackground::set(*this, color());
    }
    // What was under the first press may be gone with its click: two clicks on two things are no double
    // click.
    if (event->type() == QEvent::MouseButtonDblClick && m_eventDepth == 0 && !m_takenAgain) {
        return true;
    }
    // The base class sends pointer events through its own handlers and back here before the scene sees them;
    // only after the outermost call is it known whether an item took the press.
    ++m_eventDepth;
    const bool handled = QQuickView::event(event);
    --m_eventDepth;
    if (m_eventDepth == 0) {
        if (event->type() == QEvent::MouseButtonPress) {
            notePress(*static_cast<QPointerEvent *>(event));
        }
        dragBackground(event);
    }
    return handled;
}

QObject *MainWindow::takerOf(const QPointerEvent &event) {
    const QEventPoint &point = event.points().constFirst();
    if (QObject *exclusive = event.exclusiveGrabber(point)) {
        return exclusive;
    }
    return event.passiveGrabbers(point).value(0, this);
}

void MainWindow::notePress(const QPointerEvent &press) {
    QObject *taker = takerOf(press);
    m_takenAgain = m_taker == taker;
    m_taker = taker;
}

// The events' own position may be that in an item which was asked and did not want them.
void MainWindow::dragBackground(QEvent *event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto *press = static_cast<QMouseEvent *>(event);
        m_press.reset();
        if (m_taker != this) {
            return;
        }
        if (press->button() == Qt::LeftButton) {
            m_press = press->scenePosition();
        } else if (press->button() == Qt::RightButton) {
            Q_EMIT menuRequested(press->scenePosition());
        }
        return;
    }
    case QEvent::MouseMove: {
        const auto *move = static_cast<QMouseEvent *>(event);
        const int threshold = QGuiApplication::styleHints()->startDragDistance();
        if (!m_press || (move->scenePosition() - *m_press).manhattanLength() < threshold) {
            return;
        }
        m_press.reset();
        if (move->buttons().testFlag(Qt::LeftButton) && !isFullScreen()) {
            startSystemMove();
        }
        return;
    }
    case QEvent::MouseButtonDblClick:
        if (m_press) {
            toggleMaximised();
        }
        m_press.reset();
        return;
    case QEvent::MouseButtonRelease:
        m_press.reset();
        return;
    default:
        return;
    }
}
