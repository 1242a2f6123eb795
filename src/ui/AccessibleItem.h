#pragma once

#include <private/qaccessiblequickitem_p.h>

/// What assistive technology is told of an item of the scene, where Qt 6.4 leaves something out: that the
/// item is disabled and then offers nothing to do, where it is in device pixels, that a text cannot be
/// focused, the title of a menu, the shortcut of a menu's entry, what is modal, and the rows of a list in the
/// order in which they are shown.
///
/// Menus and dialogs say it by their properties title and modal, other items by properties of these names,
/// and entries by shortcutText.
class AccessibleItem : public QAccessibleQuickItem {
public:
    explicit AccessibleItem(QQuickItem *item);

    QRect rect() const override;
    QAccessible::State state() const override;
    QString text(QAccessible::Text kind) const override;
    QStringList actionNames() const override;
    void doAction(const QString &name) override;
    QStringList keyBindingsForAction(const QString &name) const override;
    QAccessibleInterface *child(int index) const override;
    int indexOfChild(const QAccessibleInterface *child) const override;

private:
    /// A property of the item, or of the popup that it shows.
    QVariant told(const char *property) const;
    QList<QAccessibleInterface *> inOrder() const;
};
