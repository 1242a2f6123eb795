#include "AccessibleItem.h"

#include <QQuickItem>
#include <private/qaccessiblequickitem_p.h>
#include <private/qquickitem_p.h>

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
