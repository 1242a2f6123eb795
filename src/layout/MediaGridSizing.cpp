#include "MediaGridSizing.h"

namespace MediaGridSizing {

std::vector<Range> pageRanges(QSizeF, const std::vector<double> &) {
    return {};
}

} // namespace MediaGridSizing
