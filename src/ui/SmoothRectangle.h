#pragma once

#include "PixelItem.h"

#include <QColor>
#include <QPainterPath>

/// A rectangle whose corners are continuous: their curvature grows gradually instead of jumping from the
/// straight edge to a circle. Anti-aliased at the screen's own pixels. May carry a border, drawn inside the
/// edge, and a shadow, drawn outside the shape only, so that translucent fills stay clear.
class SmoothRectangle : public PixelItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double radius MEMBER m_radius WRITE setRadius NOTIFY changed)
    Q_PROPERTY(QColor color MEMBER m_color WRITE setColor NOTIFY changed)
    Q_PROPERTY(QColor borderColor MEMBER m_borderColor WRITE setBorderColor NOTIFY changed)
    Q_PROPERTY(double borderWidth MEMBER m_borderWidth WRITE setBorderWidth NOTIFY changed)
    Q_PROPERTY(QColor shadowColor MEMBER m_shadowColor WRITE setShadowColor NOTIFY changed)
    Q_PROPERTY(double shadowRadius MEMBER m_shadowRadius WRITE setShadowRadius NOTIFY changed)
    Q_PROPERTY(double shadowOffset MEMBER m_shadowOffset WRITE setShadowOffset NOTIFY changed)
    /// Fills what the rounded corners leave out instead of the shape: laid over a picture on a plain ground
    /// it rounds the picture's corners.
    Q_PROPERTY(bool inverted MEMBER m_inverted WRITE setInverted NOTIFY changed)

public:
    using PixelItem::PixelItem;

    void setRadius(double radius) { set(m_radius, radius); }
    void setColor(const QColor &color) { set(m_color, color); }
    void setBorderColor(const QColor &color) { set(m_borderColor, color); }
    void setBorderWidth(double width) { set(m_borderWidth, width); }
    void setShadowColor(const QColor &color) { set(m_shadowColor, color); }
    void setShadowRadius(double radius) { set(m_shadowRadius, radius); }
    void setShadowOffset(double offset) { set(m_shadowOffset, offset); }
    void setInverted(bool inverted) { set(m_inverted, inverted); }

    /// A rectangle with continuous corners; the radius is bounded by half the shorter side.
    static QPainterPath path(const QRectF &rect, double radius);

protected:
    QSizeF pictureSize(QSizeF itemSize) const override;
    double margin() const override;
    void draw(QImage &image, const QRectF &rect, double ratio) const override;

private:
    bool hasShadow() const { return m_shadowRadius > 0 && m_shadowColor.alpha() > 0; }
    void drawShadow(QImage &image, const QPainterPath &shape, double ratio) const;

    double m_radius = 0;
    QColor m_color = Qt::transparent;
    QColor m_borderColor = Qt::transparent;
    double m_borderWidth = 0;
    QColor m_shadowColor = Qt::transparent;
    double m_shadowRadius = 0;
    double m_shadowOffset = 0;
    bool m_inverted = false;
};
