#pragma once

#include <QColor>
#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

/// One of the program's symbols, rasterised for the screen's own pixels.
///
/// Its implicit box is square, of an even number of points, and a little larger than the point size, as a
/// letter's box is; the drawing is centred in whatever size the item gets.
class SymbolIcon : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed)
    /// Of the text that the symbol goes with, in points.
    Q_PROPERTY(double size READ size WRITE setSize NOTIFY changed)
    Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY changed)
    /// A font weight (Font.Light … Font.Bold).
    Q_PROPERTY(int weight READ weight WRITE setWeight NOTIFY changed)

public:
    explicit SymbolIcon(QQuickItem *parent = nullptr);

    const QString &name() const { return m_name; }
    void setName(const QString &name);
    double size() const { return m_size; }
    void setSize(double size);
    const QColor &color() const { return m_color; }
    void setColor(const QColor &color);
    int weight() const { return m_weight; }
    void setWeight(int weight);

    /// The symbol on a transparent square of side pixels, whose drawing grid spans gridSide pixels around the
    /// centre.
    static QImage rasterise(const QString &name, const QColor &color, int weight, QSize pixels,
                            double gridSide);

Q_SIGNALS:
    void changed();

protected:
    QSGNode *updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *data) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    double gridSide() const;
    void redraw();

    QString m_name;
    double m_size = 13;
    QColor m_color = Qt::white;
    int m_weight = 400;
    bool m_imageStale = true;
    QSize m_imagePixels;
};
