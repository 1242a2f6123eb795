#include "MediaGridSizing.h"

#include "JustifiedRows.h"

namespace MediaGridSizing {

namespace {

using namespace JustifiedRows;

/// One narrowest item at target height.
constexpr double smallestWidth = smallestRatio * gridTargetHeight;
constexpr double smallestPageHeight = 1;
/// How far a page may overrun the height: half a point is not seen, and rounding may not cost a row.
constexpr double pageTolerance = 0.5;

} // namespace

std::vector<Range> pageRanges(QSizeF size, const std::vector<double> &aspectRatios) {
    // Written so that not-a-number takes the floor, too.
    const double width = size.width() > smallestWidth ? size.width() : smallestWidth;
    const double height = size.height() > smallestPageHeight ? size.height() : smallestPageHeight;
    const auto count = qsizetype(aspectRatios.size());

    std::vector<Range> pages;
    qsizetype pageBegin = 0;
    double used = 0;
    for (qsizetype next = 0; next < count;) {
        const Row row = rowFrom(aspectRatios, next, width, gridSpacing, gridTargetHeight);
        const double candidate = used + gridSpacing + row.height;
        if (used == 0) {
            used = row.height;
        } else if (height + pageTolerance >= candidate) {
            used = candidate;
        } else {
            if (pages.empty()) {
                // The other pages will not be much smaller: growing again and again costs more than the rows.
                pages.reserve(size_t(count / row.begin * 5 / 4 + 1));
            }
            pages.push_back({pageBegin, row.begin});
            pageBegin = row.begin;
            used = row.height;
        }
        next = row.end;
    }
    if (count > 0) {
        pages.push_back({pageBegin, count});
    }
    return pages;
}

} // namespace MediaGridSizing
