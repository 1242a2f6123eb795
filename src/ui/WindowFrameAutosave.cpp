#include "WindowFrameAutosave.h"

#include "Preferences.h"

#include <QGuiApplication>
#include <QScreen>

namespace {

// A window manager reports the frame of a maximised window a little before it reports that it is maximised.
constexpr int settleMilliseconds = 400;

WindowFrame::Screen described(const QScreen &screen) {
    return {screen.name(), screen.availableGeometry()};
}

QList<WindowFrame::Screen> describedScreens() {
    QList<WindowFrame::Screen> result;
    for (const QScreen *screen : QGuiApplication::screens()) {
        result.append(described(*screen));
    }
    return result;
}

} // namespace

WindowFrameAutosave::WindowFrameAutosave(QWindow &window, Preferences *preferences, QString name)
    : m_window(window), m_preferences(preferences), m_name(std::move(name)) {
    m_timer.setSingleShot(true);
    m_timer.setInterval(settleMilliseconds);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { save(); });
    const auto settle = [this] { m_timer.start(); };
    QObject::connect(&window, &QWindow::xChanged, &m_timer, settle);
    QObject::connect(&window, &QWindow::yChanged, &m_timer, settle);
    QObject::connect(&window, &QWindow::widthChanged, &m_timer, settle);
    QObject::connect(&window, &QWindow::heightChanged, &m_timer, settle);
    QObject::connect(&window, &QWindow::windowStateChanged, &m_timer, settle);
}

void WindowFrameAutosave::restore(QSize firstSize) {
    const QScreen *screen = m_window.screen();
    const QRect available = screen != nullptr ? screen->availableGeometry() : QRect(QPoint(), firstSize);
    QRect frame = WindowFrame::centred(firstSize, available, m_window.minimumSize());
    const std::optional<QString> text =
        m_preferences != nullptr ? m_preferences->string(m_name) : std::nullopt;
    const std::optional<WindowFrame> kept = text ? WindowFrame::fromText(*text) : std::nullopt;
    if (kept) {
        frame = kept->placed(describedScreens(), m_window.minimumSize());
    }
    m_normalFrame = frame;
    m_window.setGeometry(frame);
    if (kept && kept->maximised) {
        m_window.setWindowStates(Qt::WindowMaximized);
    }
}

void WindowFrameAutosave::noteFrame() {
    const Qt::WindowStates special = Qt::WindowMaximized | Qt::WindowFullScreen | Qt::WindowMinimized;
    if (!(m_window.windowStates() & special) && m_window.isVisible()) {
        m_normalFrame = m_window.geometry();
    }
}

void WindowFrameAutosave::save() {
    m_timer.stop();
    noteFrame();
    if (m_preferences == nullptr || m_window.screen() == nullptr || m_normalFrame.isEmpty()) {
        return;
    }
    const WindowFrame now{m_normalFrame, described(*m_window.screen()),
                          m_window.windowStates().testFlag(Qt::WindowMaximized)};
    m_preferences->setString(m_name, now.text());
}
