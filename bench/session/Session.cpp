#include "Session.h"

#include "AppState.h"
#include "MediaPager.h"
#include "ThumbnailImage.h"

#include <QCoreApplication>
#include <QCursor>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int patience = 60'000;

[[noreturn]] void fail(const char *what) {
    std::fprintf(stderr, "%s\n", what);
    std::exit(1);
}

void spin(const std::function<bool()> &condition) {
    QElapsedTimer clock;
    clock.start();
    // Wakes the loop for the conditions that no event announces. (With a time limit, processEvents() would
    // not sleep but keep a whole core busy.)
    QTimer alarm;
    alarm.start(10);
    while (!condition()) {
        if (clock.hasExpired(patience)) {
            fail("the program did not get there");
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

QQuickView *mainWindow() {
    for (QWindow *window : QGuiApplication::topLevelWindows()) {
        if (auto *view = qobject_cast<QQuickView *>(window)) {
            return view;
        }
    }
    return nullptr;
}

/// The items of the page that have their pictures.
void collect(const QQuickItem *item, std::vector<const QQuickItem *> &pictures) {
    if (const auto *thumbnail = qobject_cast<const ThumbnailImage *>(item)) {
        if (thumbnail->hasImage()) {
            pictures.push_back(item);
        }
    }
    for (const QQuickItem *child : item->childItems()) {
        collect(child, pictures);
    }
}

} // namespace

Session::Session() {
    m_app.start({});
    QQuickView *view = nullptr;
    spin([&] {
        return (view = mainWindow()) != nullptr && view->isExposed() && view->rootObject() != nullptr;
    });
    m_window = view;
    m_state = view->rootObject()->property("state").value<AppState *>();
    if (m_state == nullptr) {
        fail("the scene has no state");
    }
}

Session::~Session() {
    m_app.quit();
    m_app.end();
}

void Session::open(const FileURL &folder) {
    m_state->openFolder(folder, true);
    spin([this] { return !m_state->isScanning() && m_state->folder().has_value(); });
    spin([this] {
        return (m_pager = static_cast<QQuickView *>(m_window)->rootObject()->findChild<MediaPager *>()) !=
               nullptr;
    });
}

void Session::press(Qt::Key key) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier);
        QCoreApplication::sendEvent(m_window, &event);
    }
}

void Session::hover(int index) {
    std::vector<const QQuickItem *> pictures;
    collect(m_window->contentItem(), pictures);
    const QQuickItem *item = pictures.at(size_t(index) % pictures.size());
    QTest::mouseMove(m_window, item->mapToScene({item->width() / 2, item->height() / 2}).toPoint());
}

void Session::pointAway() {
    QCursor::setPos(m_window->geometry().bottomRight() + QPoint(10, 10));
}

void Session::wait(int milliseconds) {
    QElapsedTimer clock;
    clock.start();
    spin([&] { return clock.hasExpired(milliseconds); });
}

bool Session::isComplete() const {
    if (m_pager == nullptr || m_state->isScanning()) {
        return false;
    }
    std::vector<const QQuickItem *> pictures;
    collect(m_window->contentItem(), pictures);
    const qsizetype items = m_pager->pageItemIds().size();
    return items > 0 && qsizetype(pictures.size()) >= items;
}

double Session::untilPresented(const std::function<bool()> &condition) {
    QElapsedTimer clock;
    clock.start();
    // Right before a frame takes over the scene it is decided what that frame shows.
    bool shown = false;
    bool presented = false;
    QObject context;
    QObject::connect(m_window, &QQuickWindow::afterAnimating, &context, [&] { shown = condition(); });
    QObject::connect(m_window, &QQuickWindow::frameSwapped, &context, [&] { presented = shown; });
    m_window->update();
    spin([&] { return presented; });
    return double(clock.nsecsElapsed()) * 1e-6;
}
