#include "WindowFrame.h"

#include <QStringList>

#include <algorithm>

namespace {

// The strip by which the user can take hold of the window, and how much of it must be in sight.
constexpr int stripHeight = 48;
constexpr int reachableWidth = 160;
constexpr int numberCount = 9;

qint64 area(const QRect &rect) {
    return rect.isEmpty() ? 0 : qint64(rect.width()) * rect.height();
}

bool canReach(const QRect &frame, const QList<WindowFrame::Screen> &screens) {
    const QRect strip(frame.topLeft(), QSize(frame.width(), stripHeight));
    return std::ranges::any_of(screens, [&](const WindowFrame::Screen &screen) {
        const QRect visible = strip & screen.available;
        return visible.width() >= reachableWidth && visible.height() >= stripHeight / 2;
    });
}

QSize bounded(QSize size, QSize screen, QSize minimum) {
    return size.boundedTo(screen).expandedTo(minimum);
}

// The top left corner wins where the window is larger than the screen.
QRect movedInside(QRect frame, const QRect &available) {
    frame.moveRight(std::min(frame.right(), available.right()));
    frame.moveBottom(std::min(frame.bottom(), available.bottom()));
    frame.moveLeft(std::max(frame.left(), available.left()));
    frame.moveTop(std::max(frame.top(), available.top()));
    return frame;
}

} // namespace

QString WindowFrame::text() const {
    const QRect &a = screen.available;
    return QStringLiteral("%1 %2 %3 %4 %5 %6 %7 %8 %9 ")
               .arg(frame.x())
               .arg(frame.y())
               .arg(frame.width())
               .arg(frame.height())
               .arg(a.x())
               .arg(a.y())
               .arg(a.width())
               .arg(a.height())
               .arg(maximised ? 1 : 0) +
           screen.name;
}

std::optional<WindowFrame> WindowFrame::fromText(const QString &text) {
    const QStringList parts = text.split(QLatin1Char(' '));
    if (parts.size() <= numberCount) {
        return std::nullopt;
    }
    // Far beyond every desktop, and far from overflowing a rectangle's edges.
    constexpr int limit = 1'000'000;
    int numbers[numberCount];
    for (int i = 0; i < numberCount; ++i) {
        bool ok = false;
        numbers[i] = parts[i].toInt(&ok);
        if (!ok || std::abs(numbers[i]) > limit) {
            return std::nullopt;
        }
    }
    WindowFrame result;
    result.frame = QRect(numbers[0], numbers[1], numbers[2], numbers[3]);
    result.screen.available = QRect(numbers[4], numbers[5], numbers[6], numbers[7]);
    result.maximised = numbers[8] != 0;
    result.screen.name = parts.mid(numberCount).join(QLatin1Char(' '));
    if (result.frame.isEmpty()) {
        return std::nullopt;
    }
    return result;
}

QRect WindowFrame::placed(const QList<Screen> &screens, QSize minimum) const {
    QRect result = frame;
    const auto same = std::ranges::find(screens, screen.name, &Screen::name);
    if (same != screens.end()) {
        result.translate(same->available.topLeft() - screen.available.topLeft());
    }
    if (screens.isEmpty()) {
        return QRect(result.topLeft(), result.size().expandedTo(minimum));
    }
    const auto home = std::ranges::max_element(
        screens, {}, [&](const Screen &candidate) { return area(candidate.available & result); });
    result.setSize(bounded(result.size(), home->available.size(), minimum));
    if ((home->available & result).isEmpty()) {
        return centred(result.size(), screens.constFirst().available, minimum);
    }
    return canReach(result, screens) ? result : movedInside(result, home->available);
}

QRect WindowFrame::centred(QSize size, const QRect &available, QSize minimum) {
    QRect result(QPoint(), bounded(size, available.size(), minimum));
    result.moveCenter(available.center());
    return movedInside(result, available);
}
