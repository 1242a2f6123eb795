#pragma once

#include <private/qaccessiblequickview_p.h>

/// What assistive technology is told of a window and all that is in it. Main thread.
class AccessibleScene : public QAccessibleQuickWindow {
public:
    explicit AccessibleScene(QQuickWindow *window);

    QRect rect() const override;

    /// Lets this tell of windows and AccessibleItem of items. Before they exist; may be called again.
    static void install();

    /// Something in a window by its place on the screen in device pixels, which are what X11 counts; Qt 6.4
    /// tells its own pixels, of which a scaled screen has fewer. Elsewhere the rectangle as it is: a window
    /// of Wayland does not know its place.
    static QRect onScreen(const QRect &rect, const QWindow *window);
};
