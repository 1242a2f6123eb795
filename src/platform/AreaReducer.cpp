#include "AreaReducer.h"

#include <QColorSpace>

#include <algorithm>
#include <cmath>

namespace {

constexpr int channels = 4;

QImage::Format reducedFormat(const QImage &image) {
    return image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
}

} // namespace

AreaReducer::AreaReducer(QSize source, QSize target, QImage::Format format)
    : m_source(source), m_target(target, format), m_columns(size_t(target.width())),
      m_sums(size_t(source.width()) * channels) {
    m_target.fill(Qt::black);
    if (m_target.hasAlphaChannel()) {
        m_target.fill(Qt::transparent);
    }
    const double step = double(source.width()) / target.width();
    for (int x = 0; x < target.width(); ++x) {
        const double from = x * step;
        const double to = std::min((x + 1) * step, double(source.width()));
        Column &column = m_columns[size_t(x)];
        column.first = int(from);
        column.last = std::max(column.first, int(std::ceil(to)) - 1);
        column.firstWeight = float(std::min(to, column.first + 1.0) - from);
        column.lastWeight = float(to - column.last);
    }
}

void AreaReducer::addRow(const uchar *row) {
    const double step = double(m_source.height()) / m_target.height();
    const double top = m_sourceRow;
    const double bottom = ++m_sourceRow;
    double from = top;
    // A source row may end one target row and begin the next.
    while (m_targetRow < m_target.height() && from < bottom) {
        const bool last = m_targetRow + 1 == m_target.height();
        const double end = last ? m_source.height() : (m_targetRow + 1) * step;
        accumulate(row, float(std::min(bottom, end) - from));
        if (end > bottom) {
            return;
        }
        finishTargetRow();
        from = end;
    }
}

void AreaReducer::accumulate(const uchar *row, float weight) {
    float *sums = m_sums.data();
    const size_t count = m_sums.size();
    for (size_t i = 0; i < count; ++i) {
        sums[i] += weight * float(row[i]);
    }
}

void AreaReducer::finishTargetRow() {
    const double area =
        (double(m_source.width()) / m_target.width()) * (double(m_source.height()) / m_target.height());
    const auto scale = float(1.0 / area);
    uchar *out = m_target.scanLine(m_targetRow);
    for (const Column &column : m_columns) {
        float sum[channels];
        const float *in = m_sums.data() + size_t(column.first) * channels;
        for (int c = 0; c < channels; ++c) {
            sum[c] = column.firstWeight * in[c];
        }
        for (int x = column.first + 1; x < column.last; ++x) {
            in += channels;
            for (int c = 0; c < channels; ++c) {
                sum[c] += in[c];
            }
        }
        if (column.last > column.first) {
            in += channels;
            for (int c = 0; c < channels; ++c) {
                sum[c] += column.lastWeight * in[c];
            }
        }
        for (int c = 0; c < channels; ++c) {
            *out++ = uchar(std::min(255.0F, sum[c] * scale + 0.5F));
        }
    }
    std::fill(m_sums.begin(), m_sums.end(), 0.0F);
    ++m_targetRow;
}

QImage AreaReducer::reduce(const QImage &image, QSize target) {
    const QImage::Format format = reducedFormat(image);
    if (image.size() == target) {
        return image.convertToFormat(format);
    }
    AreaReducer reducer(image.size(), target, format);
    constexpr int stripRows = 64;
    for (int y = 0; y < image.height(); y += stripRows) {
        const int rows = std::min(stripRows, image.height() - y);
        QImage strip(image.constScanLine(y), image.width(), rows, image.bytesPerLine(), image.format());
        strip.setColorTable(image.colorTable());
        strip = strip.convertToFormat(format);
        for (int row = 0; row < rows; ++row) {
            reducer.addRow(strip.constScanLine(row));
        }
    }
    QImage reduced = reducer.take();
    reduced.setColorSpace(image.colorSpace());
    return reduced;
}
