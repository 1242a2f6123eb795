#include "AlphaBlur.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

/// One running mean of 2 × reach + 1 samples along a line; outside the line is transparent.
void blurLine(uchar *line, qsizetype stride, int count, int reach, std::vector<uchar> &copy) {
    copy.resize(size_t(count));
    for (int i = 0; i < count; ++i) {
        copy[size_t(i)] = line[i * stride];
    }
    const int window = 2 * reach + 1;
    int sum = 0;
    for (int i = 0; i < std::min(reach, count); ++i) {
        sum += copy[size_t(i)];
    }
    for (int i = 0; i < count; ++i) {
        if (i + reach < count) {
            sum += copy[size_t(i) + size_t(reach)];
        }
        if (i - reach - 1 >= 0) {
            sum -= copy[size_t(i - reach - 1)];
        }
        line[i * stride] = uchar((sum + window / 2) / window);
    }
}

} // namespace

void AlphaBlur::apply(QImage &mask, double sigma) {
    // Three running means in a row come close to a Gaussian; this width gives them its deviation.
    const int reach = int(std::round((sigma * 1.88 - 1) / 2));
    if (reach < 1) {
        return;
    }
    std::vector<uchar> copy;
    uchar *bits = mask.bits();
    const qsizetype bytesPerLine = mask.bytesPerLine();
    for (int pass = 0; pass < 3; ++pass) {
        for (int y = 0; y < mask.height(); ++y) {
            blurLine(bits + y * bytesPerLine, 1, mask.width(), reach, copy);
        }
        for (int x = 0; x < mask.width(); ++x) {
            blurLine(bits + x, bytesPerLine, mask.height(), reach, copy);
        }
    }
}
