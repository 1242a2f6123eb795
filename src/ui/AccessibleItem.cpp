#include "AccessibleItem.h"

#include "AccessibleScene.h"

#include <QQuickItem>

#include <algorithm>

AccessibleItem::AccessibleItem(QQuickItem *item) : QAccessibleQuickItem(item) {
    QObject::connect(item, &QQuickItem::enabledChanged, item, [item] {
        QAccessible::State changed;
        changed.disabled = true;
        QAccessibleStateChangeEvent event(item, changed);
        QAccessible::updateAccessibility(&event);
    });
}

QRect AccessibleItem::rect() const {
    return AccessibleScene::onScreen(QAccessibleQuickItem::rect(), window());
}

QAccessible::State AccessibleItem::state() const {
    QAccessible::State state = QAccessibleQuickItem::state();
    // The base class compares the item's place with the window's in other pixels.
    state.offscreen = !AccessibleScene::onScreen(viewRect(), window()).intersects(rect());
    state.disabled = !item()->isEnabled();
    state.modal = told("modal").toBool();
    if (role() == QAccessible::StaticText) {
        state.focusable = item()->activeFocusOnTab();
    }
    return state;
}

QString AccessibleItem::text(QAccessible::Text kind) const {
    const QString text = QAccessibleQuickItem::text(kind);
    const bool isNameless = kind == QAccessible::Name && text.isEmpty() && role() == QAccessible::PopupMenu;
    return isNameless ? told("title").toString() : text;
}

QStringList AccessibleItem::actionNames() const {
    QStringList names = item()->isEnabled() ? QAccessibleQuickItem::actionNames() : QStringList();
    // What a role offers by itself comes once more with its handler.
    names.removeDuplicates();
    return names;
}

void AccessibleItem::doAction(const QString &name) {
    if (item()->isEnabled()) {
        QAccessibleQuickItem::doAction(name);
    }
}

QStringList AccessibleItem::keyBindingsForAction(const QString &name) const {
    const QString shortcut = told("shortcutText").toString();
    return name == pressAction() && !shortcut.isEmpty() ? QStringList(shortcut) : QStringList();
}

QAccessibleInterface *AccessibleItem::child(int index) const {
    return role() == QAccessible::List ? inOrder().value(index) : QAccessibleQuickItem::child(index);
}

int AccessibleItem::indexOfChild(const QAccessibleInterface *child) const {
    if (role() != QAccessible::List) {
        return QAccessibleQuickItem::indexOfChild(child);
    }
    const QList<QAccessibleInterface *> children = inOrder();
    const auto found = std::find(children.begin(), children.end(), child);
    return found == children.end() ? -1 : int(found - children.begin());
}

QVariant AccessibleItem::told(const char *property) const {
    // A popup is no item; it owns the one that shows it.
    const bool isPopup = item()->inherits("QQuickPopupItem") && item()->parent() != nullptr;
    return (isPopup ? item()->parent() : item())->property(property);
}

// A view leaves rows that moved where they were among its children, and makes others as it scrolls.
QList<QAccessibleInterface *> AccessibleItem::inOrder() const {
    const int count = childCount();
    QList<QAccessibleInterface *> children;
    children.reserve(count);
    for (int index = 0; index < count; ++index) {
        children.append(QAccessibleQuickItem::child(index));
    }
    const auto isRow = [](const auto *child) {
        return child != nullptr && child->role() == QAccessible::ListItem;
    };
    const auto rows = std::stable_partition(children.begin(), children.end(), isRow);
    std::stable_sort(children.begin(), rows, [](const auto *one, const auto *other) {
        return one->rect().top() < other->rect().top();
    });
    return children;
}
