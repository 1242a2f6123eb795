#include "AccessibleItem.h"

#include <QQuickItem>
#include <private/qaccessiblequickitem_p.h>
#include <private/qquickitem_p.h>

#include <algorithm>
#include <vector>

namespace AccessibleItem {
namespace {

class Item : public QAccessibleQuickItem {
public:
    explicit Item(QQuickItem *item) : QAccessibleQuickItem(item) {
        QObject::connect(item, &QQuickItem::enabledChanged, item, [item] {
            QAccessible::State changed;
            changed.disabled = true;
            QAccessibleStateChangeEvent event(item, changed);
            QAccessible::updateAccessibility(&event);
        });
    }

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleQuickItem::state();
        state.disabled = !item()->isEnabled();
        return state;
    }

    QStringList actionNames() const override {
        return item()->isEnabled() ? QAccessibleQuickItem::actionNames() : QStringList();
    }

    void doAction(const QString &name) override {
        if (item()->isEnabled()) {
            QAccessibleQuickItem::doAction(name);
        }
    }

    QAccessibleInterface *child(int index) const override {
        if (role() != QAccessible::List) {
            return QAccessibleQuickItem::child(index);
        }
        const std::vector<QAccessibleInterface *> children = inOrder();
        return index >= 0 && index < int(children.size()) ? children[size_t(index)] : nullptr;
    }

    int indexOfChild(const QAccessibleInterface *child) const override {
        if (role() != QAccessible::List) {
            return QAccessibleQuickItem::indexOfChild(child);
        }
        const std::vector<QAccessibleInterface *> children = inOrder();
        const auto found = std::find(children.begin(), children.end(), child);
        return found == children.end() ? -1 : int(found - children.begin());
    }

private:
    // A view leaves rows that moved where they were among its children, and makes others as it scrolls.
    std::vector<QAccessibleInterface *> inOrder() const {
        const int count = childCount();
        std::vector<QAccessibleInterface *> children;
        children.reserve(size_t(count));
        for (int index = 0; index < count; ++index) {
            children.push_back(QAccessibleQuickItem::child(index));
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
};

// Asked before Qt Quick's own factory, which it follows in leaving out what is not accessible.
QAccessibleInterface *make(const QString &className, QObject *object) {
    auto *item = className == QLatin1String("QQuickItem") ? qobject_cast<QQuickItem *>(object) : nullptr;
    return item != nullptr && QQuickItemPrivate::get(item)->isAccessible ? new Item(item) : nullptr;
}

} // namespace

void install() {
    QAccessible::installFactory(make);
}

} // namespace AccessibleItem
