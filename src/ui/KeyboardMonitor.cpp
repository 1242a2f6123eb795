#include "KeyboardMonitor.h"

#include <QGuiApplication>
#include <QInputMethodQueryEvent>
#include <QKeyEvent>
#include <QQuickItem>
#include <QQuickWindow>

KeyboardMonitor::~KeyboardMonitor() {
    if (QCoreApplication::instance() != nullptr) {
        QCoreApplication::instance()->removeEventFilter(this);
    }
}

void KeyboardMonitor::componentComplete() {
    QCoreApplication::instance()->installEventFilter(this);
}

bool KeyboardMonitor::eventFilter(QObject *watched, QEvent *event) {
    // A window passes its presses on to its items, which would show each of them here a second time.
    if (event->type() != QEvent::KeyPress || m_suspended || !m_keyMap) {
        return false;
    }
    const auto *window = qobject_cast<QQuickWindow *>(watched);
    if (window == nullptr || isTyping() || hasOpenMenu(*window)) {
        return false;
    }
    return m_keyMap->handleKey(KeyPress::fromEvent(*static_cast<QKeyEvent *>(event)));
}

bool KeyboardMonitor::isTyping() {
    QObject *focus = QGuiApplication::focusObject();
    if (focus == nullptr) {
        return false;
    }
    QInputMethodQueryEvent query(Qt::ImEnabled);
    QCoreApplication::sendEvent(focus, &query);
    return query.value(Qt::ImEnabled).toBool();
}

bool KeyboardMonitor::hasOpenMenu(const QQuickWindow &window) {
    // An open menu holds the focus; its item's owner is the menu itself.
    for (QQuickItem *item = window.activeFocusItem(); item != nullptr; item = item->parentItem()) {
        if (item->inherits("QQuickPopupItem") && item->parent() != nullptr &&
            item->parent()->inherits("QQuickMenu")) {
            return true;
        }
    }
    return false;
}
