#pragma once

#include "AppState.h"
#include "KeyPress.h"

#include <QObject>
#include <QPointer>
#include <QtQml/qqmlregistration.h>

/// What the keys of the browser window do. Main thread.
///
/// The map keeps the window's immersive flag, because some keys read it and some write it; whoever owns the
/// window binds the rest and follows fullScreenToggled().
class KeyMap : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(AppState *state READ state WRITE setState NOTIFY stateChanged)
    /// There is a window to toggle.
    Q_PROPERTY(bool hasWindow MEMBER m_hasWindow NOTIFY windowChanged)
    Q_PROPERTY(bool windowIsFullScreen MEMBER m_windowIsFullScreen NOTIFY windowChanged)
    /// The window is in, or on its way into, full screen.
    Q_PROPERTY(bool immersive READ immersive WRITE setImmersive NOTIFY immersiveChanged)

public:
    using QObject::QObject;

    AppState *state() const { return m_state; }
    void setState(AppState *state);
    bool immersive() const { return m_immersive; }
    void setImmersive(bool immersive);

    /// Does what the key stands for. True when the press is consumed and may reach nothing else.
    bool handleKey(const KeyPress &press);

Q_SIGNALS:
    void stateChanged();
    void windowChanged();
    void immersiveChanged();
    /// The window is to enter or leave full screen. Sent only when there is one.
    void fullScreenToggled();

private:
    bool handleInViewer(KeyPress::Key key);
    bool handleInBrowser(KeyPress::Key key);
    void leave();
    void toggleFullScreen(bool immersive);

    QPointer<AppState> m_state;
    bool m_hasWindow = false;
    bool m_windowIsFullScreen = false;
    bool m_immersive = false;
};
