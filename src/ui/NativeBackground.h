#pragma once

class QColor;
class QWindow;

namespace NativeBackground {

/// Lets the X server fill with that colour what a window has not drawn yet: at its start, and at the edges
/// while it grows. It shows white or what lies behind the window otherwise. Does nothing on other window
/// systems. Main thread, once the window has its native one.
void set(const QWindow &window, const QColor &color);

} // namespace NativeBackground
