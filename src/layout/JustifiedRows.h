#pragma once

#include <QtGlobal>

#include <algorithm>
#include <span>

/// The rule by which both the pages and the drawn grid break media into rows, so that a page boundary always
/// falls between two rows of the grid. Pure; any thread. Lengths in points.
namespace JustifiedRows {

constexpr double smallestRatio = 0.35;
constexpr double largestRatio = 3.5;
constexpr double smallestHeight = 125;
constexpr double largestHeight = 330;
/// The browser's grid.
constexpr double gridSpacing = 6;
constexpr double gridTargetHeight = 245;

struct Row {
    /// Half-open range of item indices, never empty.
    qsizetype begin = 0;
    qsizetype end = 0;
    double height = 0;
    /// Of the clamped ratios.
    double ratioSum = 0;
    /// Spans the width; only the last row of a list can be unfilled.
    bool full = false;
};

/// The ratio that a cell is given; not-a-number counts as the narrowest.
constexpr double clampedRatio(double ratio) {
    const double raised = ratio > smallestRatio ? ratio : smallestRatio;
    return raised < largestRatio ? raised : largestRatio;
}

/// The row that starts at begin, which must be a valid index. Inline because the page computation runs it
/// over every item of a folder on every layout pass.
inline Row rowFrom(std::span<const double> ratios, qsizetype begin, double width, double spacing,
                   double targetHeight) {
    const auto count = qsizetype(ratios.size());
    double sum = 0;
    // Counted as a double: converting the index for each item costs a tenth of the whole.
    double gaps = 0;
    for (qsizetype i = begin; i < count; ++i, ++gaps) {
        sum += clampedRatio(ratios[size_t(i)]);
        const double gapWidth = gaps * spacing;
        if (width <= gapWidth + sum * targetHeight) {
            const double height = (width - gapWidth) / sum;
            return {.begin = begin,
                    .end = i + 1,
                    .height = std::min(std::max(height, smallestHeight), largestHeight),
                    .ratioSum = sum,
                    .full = true};
        }
    }
    return {.begin = begin, .end = count, .height = targetHeight, .ratioSum = sum, .full = false};
}

} // namespace JustifiedRows
