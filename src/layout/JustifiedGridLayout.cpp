#include "JustifiedGridLayout.h"

#include "JustifiedRows.h"

#include <algorithm>

using namespace JustifiedRows;

std::vector<QRectF> JustifiedGridLayout::frames(std::span<const double> aspectRatios, double width) const {
    if (!(width > 0)) {
        return {};
    }
    std::vector<QRectF> frames;
    frames.reserve(aspectRatios.size());
    const auto count = qsizetype(aspectRatios.size());
    double y = 0;
    for (qsizetype next = 0; next < count;) {
        const Row row = rowFrom(aspectRatios, next, width, spacing, targetHeight);
        const double gaps = double(row.end - row.begin - 1);
        const double natural = row.full ? width : spacing * gaps + targetHeight * row.ratioSum;
        double x = std::max((width - natural) / 2, 0.0);
        for (qsizetype i = row.begin; i < row.end; ++i) {
            const double cellWidth = row.height * clampedRatio(aspectRatios[size_t(i)]);
            frames.emplace_back(x, y, cellWidth, row.height);
            x += cellWidth + spacing;
        }
        y += row.height + spacing;
        next = row.end;
    }
    return frames;
}

QSizeF JustifiedGridLayout::sizeThatFits(std::optional<double> proposedWidth,
                                         std::span<const double> aspectRatios) const {
    const double width = proposedWidth.value_or(openWidth);
    const std::vector<QRectF> placed = frames(aspectRatios, width);
    // Rows only grow downwards, so the last cell's bottom is the largest.
    return {width, placed.empty() ? 0 : placed.back().bottom()};
}
