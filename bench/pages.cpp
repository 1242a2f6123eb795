// Cutting a million items into pages, beside one plain pass over their aspect ratios.

#include "Comparison.h"
#include "MediaGridSizing.h"

#include <numeric>
#include <random>
#include <vector>

namespace {

constexpr size_t itemCount = 1'000'000;
constexpr int rounds = 25;
const QSizeF gridArea(1400, 780);

/// The shapes that cameras and telephones make, upright and lying.
std::vector<double> ratios() {
    const std::vector<double> shapes{4.0 / 3, 3.0 / 4, 3.0 / 2, 2.0 / 3, 16.0 / 9, 9.0 / 16, 1, 2.35};
    std::mt19937 random(1);
    std::uniform_int_distribution<size_t> pick(0, shapes.size() - 1);
    std::vector<double> made(itemCount);
    for (double &ratio : made) {
        ratio = shapes[pick(random)];
    }
    return made;
}

} // namespace

int main() {
    const std::vector<double> items = ratios();
    Comparison::printHeader();
    Comparison comparison("pages of 1,000,000 items");
    comparison.subject([&] {
        const auto pages = MediaGridSizing::pageRanges(gridArea, items);
        return QByteArray::number(pages.back().end);
    });
    comparison.uncheckedPeer("one pass that sums", 6, [&] {
        const double sum = std::accumulate(items.begin(), items.end(), 0.0);
        return QByteArray::number(sum);
    });
    return comparison.run(rounds) ? 0 : 1;
}
