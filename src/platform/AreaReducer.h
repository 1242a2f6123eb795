#pragma once

#include <QImage>

#include <vector>

/// Reduces a picture row by row: every target pixel is the mean of the source area that it covers. Needs the
/// memory of the target and of a few source rows, however large the source is.
///
/// Rows come from the top, four bytes a pixel; colour that has alpha is premultiplied.
class AreaReducer {
public:
    /// Both sizes at least 1 × 1, the target no larger than the source in either direction. The format of the
    /// rows and of the result: RGB32, ARGB32_Premultiplied or one of their byte-ordered twins.
    AreaReducer(QSize source, QSize target, QImage::Format format);

    void addRow(const uchar *row);
    /// The reduced picture; rows that never came are transparent or black.
    QImage take() { return std::move(m_target); }

    /// Reduces a whole picture of any format, a strip at a time. The picture itself when it already has the
    /// target's size, converted to RGB32 or, with alpha, ARGB32_Premultiplied.
    static QImage reduce(const QImage &image, QSize target);

private:
    struct Column {
        int first;
        int last;
        float firstWeight;
        float lastWeight;
    };

    void accumulate(const uchar *row, float weight);
    void finishTargetRow();

    QSize m_source;
    QImage m_target;
    std::vector<Column> m_columns;
    /// The weighted sum of the source rows for the target row in work, four floats a source pixel.
    std::vector<float> m_sums;
    int m_sourceRow = 0;
    int m_targetRow = 0;
};
