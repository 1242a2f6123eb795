#pragma once

#include <QQuickItem>
#include <QQuickWindow>

#include <cmath>

/// Puts what an item draws onto whole pixels of the screen, also at fractional scales.
namespace PixelGrid {

inline double ratioOf(const QQuickItem &item) {
    return item.window() != nullptr ? item.window()->effectiveDevicePixelRatio() : 1.0;
}

/// The rectangle of item coordinates whose edges fall on pixel boundaries nearest to the given one's.
inline QRectF snapped(const QQuickItem &item, const QRectF &rect) {
    const double ratio = ratioOf(item);
    const QPointF origin = item.mapToScene(QPointF(0, 0));
    const auto snap = [ratio](double value, double offset) {
        return std::round((value + offset) * ratio) / ratio - offset;
    };
    return {QPointF(snap(rect.left(), origin.x()), snap(rect.top(), origin.y())),
            QPointF(snap(rect.right(), origin.x()), snap(rect.bottom(), origin.y()))};
}

} // namespace PixelGrid
