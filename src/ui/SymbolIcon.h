#pragma once

#include "PixelItem.h"

#include <QColor>

/// One of the program's symbols.
///
/// Its implicit box is square, of an even number of points, and a little larger than the point size, as a
/// letter's box is; the drawing is centred in whatever size the item gets.
class SymbolIcon : public PixelItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name MEMBER m_name WRITE setName NOTIFY changed)
    /// Of the text that the symbol goes with, in points.
    Q_PROPERTY(double size MEMBER m_size WRITE setSize NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER m_color WRITE setColor NOTIFY changed)
    /// A font weight (Font.Light … Font.Bold).
    Q_PROPERTY(int weight MEMBER m_weight WRITE setWeight NOTIFY changed)

public:
    explicit SymbolIcon(QQuickItem *parent = nullptr);

    void setName(const QString &name) { set(m_name, name); }
    void setSize(double size);
    void setColor(const QColor &color) { set(m_color, color); }
    void setWeight(int weight) { set(m_weight, weight); }

protected:
    void draw(QImage &image, const QRectF &rect, double ratio) const override;

private:
    /// The side of the symbols' drawing grid, in points.
    double gridSide() const;

    QString m_name;
    double m_size = 13;
    QColor m_color = Qt::white;
    int m_weight = 400;
};
