#pragma once

#include <QList>
#include <QSizeF>

#include <vector>

/// Cuts the media of a tab into pages of whole justified rows. Pure; any thread.
namespace MediaGridSizing {

/// Half-open range of item indices.
struct Range {
    qsizetype begin = 0;
    qsizetype end = 0;

    friend bool operator==(const Range &, const Range &) = default;
};

/// One range per page: contiguous, none empty, together 0 to the number of ratios. The size is the grid area
/// in points, the ratios are the items' in display order.
std::vector<Range> pageRanges(QSizeF size, const std::vector<double> &aspectRatios);

} // namespace MediaGridSizing
