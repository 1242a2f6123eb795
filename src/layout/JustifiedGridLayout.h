#pragma once

#include <QRectF>
#include <QSizeF>

#include <optional>
#include <span>
#include <vector>

/// Places cells in justified rows: every full row is scaled so that its cells span the width at their ratios;
/// the last, unfilled row keeps the target height and is centred. Pure; any thread. Lengths in points.
struct JustifiedGridLayout {
    /// Between cells of a row and between rows.
    double spacing = 0;
    /// Natural row height.
    double targetHeight = 0;

    /// The ratio of a cell that states none.
    static constexpr double defaultAspectRatio = 16.0 / 9.0;
    /// The width taken where the container leaves it open.
    static constexpr double openWidth = 1000;

    /// One rectangle per ratio, relative to the layout's top left corner. None for a width of 0 or less.
    std::vector<QRectF> frames(std::span<const double> aspectRatios, double width) const;
    /// The proposed width and the bottom of the last row; 0 high without cells.
    QSizeF sizeThatFits(std::optional<double> proposedWidth, std::span<const double> aspectRatios) const;
};
