#include "NativeBackground.h"

#include <QColor>
#include <QGuiApplication>
#include <QWindow>

#include <xcb/xcb.h>

void NativeBackground::set(const QWindow &window, const QColor &color) {
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    // Windows that are never shown may have the interface, too, but no server.
    xcb_connection_t *connection = x11 != nullptr ? x11->connection() : nullptr;
    if (connection == nullptr || window.handle() == nullptr) {
        return;
    }
    // The bytes of every visual of 24 or 32 bits; the colour of another one is at least as dark.
    const uint32_t pixel = color.rgba();
    xcb_change_window_attributes(connection, xcb_window_t(window.winId()), XCB_CW_BACK_PIXEL, &pixel);
    xcb_flush(connection);
}
