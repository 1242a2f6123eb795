#include "PhotoTiling.h"

#include <algorithm>
#include <cmath>

namespace PhotoTiling {

int level(double scale) {
    constexpr int coarsest = 16;
    return scale > 0 ? std::clamp(int(std::floor(std::log2(1 / scale))), 0, coarsest) : coarsest;
}

QRect sourceRect(const Tile &tile, QSize picture) {
    const int side = tileSide << tile.level;
    return QRect(tile.column * side, tile.row * side, side, side).intersected(QRect(QPoint(0, 0), picture));
}

QList<Tile> tiles(QSize picture, int level, const QRectF &area) {
    const QRectF part = area.intersected(QRectF(QPointF(0, 0), picture));
    if (part.isEmpty()) {
        return {};
    }
    const double side = tileSide << level;
    QList<Tile> result;
    for (int row = int(part.top() / side); row * side < part.bottom(); ++row) {
        for (int column = int(part.left() / side); column * side < part.right(); ++column) {
            result.append({level, column, row});
        }
    }
    const QPointF middle = part.center() / side - QPointF(0.5, 0.5);
    const auto distance = [middle](const Tile &tile) {
        return std::hypot(tile.column - middle.x(), tile.row - middle.y());
    };
    std::sort(result.begin(), result.end(),
              [&](const Tile &a, const Tile &b) { return distance(a) < distance(b); });
    return result;
}

} // namespace PhotoTiling
