#pragma once

#include <QHash>
#include <QList>
#include <QRect>
#include <QRectF>
#include <QSize>

/// Cuts a large picture into squares at halved resolutions, so that only what is on the screen, at about the
/// resolution of the screen, has to be handed to the graphics card. Pure.
namespace PhotoTiling {

/// In pixels of the tile's own resolution.
constexpr int tileSide = 512;

struct Tile {
    /// How often the picture is halved.
    int level = 0;
    int column = 0;
    int row = 0;

    friend bool operator==(const Tile &, const Tile &) = default;
    friend size_t qHash(const Tile &tile, size_t seed = 0) noexcept {
        return qHashMulti(seed, tile.level, tile.column, tile.row);
    }
};

/// The coarsest level that still has a pixel for every pixel of the screen, where scale is screen pixels by
/// picture pixels. At most 16.
int level(double scale);

/// The part of the picture that the tile shows, in the picture's own pixels.
QRect sourceRect(const Tile &tile, QSize picture);

/// The tiles of the level that touch the area, which is in the picture's own pixels; nearest to its middle
/// first.
QList<Tile> tiles(QSize picture, int level, const QRectF &area);

} // namespace PhotoTiling
