#include "AccessibleScene.h"

#include "AccessibleItem.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <private/qquickitem_p.h>
#include <qpa/qplatformwindow.h>

namespace {

// Asked before Qt Quick's own factory, which it follows in leaving out what is not accessible.
QAccessibleInterface *makeAccessible(const QString &, QObject *object) {
    if (auto *item = qobject_cast<QQuickItem *>(object)) {
        return QQuickItemPrivate::get(item)->isAccessible ? new AccessibleItem(item) : nullptr;
    }
    auto *window = qobject_cast<QQuickWindow *>(object);
    return window != nullptr ? new AccessibleScene(window) : nullptr;
}

} // namespace

AccessibleScene::AccessibleScene(QQuickWindow *window) : QAccessibleQuickWindow(window) {}

QRect AccessibleScene::rect() const {
    return onScreen(QAccessibleQuickWindow::rect(), qobject_cast<QWindow *>(object()));
}

void AccessibleScene::install() {
    QAccessible::installFactory(makeAccessible);
}

QRect AccessibleScene::onScreen(const QRect &rect, const QWindow *window) {
    const QPlatformWindow *native = window != nullptr ? window->handle() : nullptr;
    if (native == nullptr || rect.isNull() || QGuiApplication::platformName() != QLatin1String("xcb")) {
        return rect;
    }
    const qreal scale = window->devicePixelRatio();
    const QPointF inWindow = rect.topLeft() - window->mapToGlobal(QPoint());
    const QRectF scaled(inWindow * scale, QSizeF(rect.size()) * scale);
    return scaled.toRect().translated(native->geometry().topLeft());
}
