#pragma once

#include "KeyMap.h"

#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QtQml/qqmlregistration.h>

class QQuickWindow;

/// Sees the key presses of the program's windows before any control does, and swallows those that the key map
/// consumes.
///
/// Installed while it exists: from the end of its creation in QML to its destruction. Presses go by untouched
/// while the user types into a text field, while a menu is open, and while suspended.
class KeyboardMonitor : public QObject, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(KeyMap *keyMap MEMBER m_keyMap NOTIFY keyMapChanged REQUIRED)
    /// A question that takes the keyboard for itself is on screen.
    Q_PROPERTY(bool suspended MEMBER m_suspended NOTIFY suspendedChanged)

public:
    using QObject::QObject;
    ~KeyboardMonitor() override;

    void classBegin() override {}
    void componentComplete() override;

Q_SIGNALS:
    void keyMapChanged();
    void suspendedChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    static bool isTyping();
    static bool hasOpenMenu(const QQuickWindow &window);

    QPointer<KeyMap> m_keyMap;
    bool m_suspended = false;
};
