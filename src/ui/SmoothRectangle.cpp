#include "SmoothRectangle.h"

#include "AlphaBlur.h"

#include <QPainter>

#include <algorithm>

namespace {

/// How far along the edge a corner begins to bend, in radii.
constexpr double cornerReach = 1.5;
/// Where a circle's arc is nearest to its square's corner, in radii: 1 - 1/√2.
constexpr double arcMiddle = 0.29289321881345254;
/// A shadow's deviation, and how far it can be seen, in shadow radii.
constexpr double shadowSigma = 0.5;
constexpr double shadowReach = 1.5;

} // namespace

QPainterPath SmoothRectangle::path(const QRectF &rect, double radius) {
    QPainterPath path;
    const double half = std::min(rect.width(), rect.height()) / 2;
    radius = std::min(radius, half);
    if (radius <= 0) {
        path.addRect(rect);
        return path;
    }
    // One cubic per corner through the middle of the circle's arc. With no room to begin early it is the
    // circle's own; with room, its curvature starts near zero.
    const double reach = std::min(cornerReach * radius, half);
    const double control = (8 * arcMiddle * radius - reach) / 3;
    const double l = rect.left();
    const double t = rect.top();
    const double r = rect.right();
    const double b = rect.bottom();
    path.moveTo(l + reach, t);
    path.lineTo(r - reach, t);
    path.cubicTo(r - control, t, r, t + control, r, t + reach);
    path.lineTo(r, b - reach);
    path.cubicTo(r, b - control, r - control, b, r - reach, b);
    path.lineTo(l + reach, b);
    path.cubicTo(l + control, b, l, b - control, l, b - reach);
    path.lineTo(l, t + reach);
    path.cubicTo(l, t + control, l + control, t, l + reach, t);
    path.closeSubpath();
    return path;
}

void SmoothRectangle::drawShadow(QImage &image, const QPainterPath &shape, double ratio) const {
    QImage mask(image.size(), QImage::Format_Alpha8);
    mask.fill(0);
    {
        QPainter painter(&mask);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillPath(shape.translated(0, m_shadowOffset * ratio), Qt::black);
    }
    AlphaBlur::apply(mask, m_shadowRadius * shadowSigma * ratio);

    image.fill(m_shadowColor);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.fillPath(shape, Qt::black);
}

QSizeF SmoothRectangle::pictureSize(QSizeF itemSize) const {
    // The four corners and one stretchable pixel or two between them.
    const double bend = std::ceil(cornerReach * m_radius + m_borderWidth) + margin();
    const double enough = 2 * (bend + 1);
    return {std::min(itemSize.width(), enough), std::min(itemSize.height(), enough)};
}

double SmoothRectangle::margin() const {
    return hasShadow() ? std::ceil(m_shadowRadius * shadowReach + std::abs(m_shadowOffset)) : 0;
}

void SmoothRectangle::draw(QImage &image, const QRectF &rect, double ratio) const {
    const QPainterPath shape = path(rect, m_radius * ratio);
    if (hasShadow()) {
        drawShadow(image, shape, ratio);
    }

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_inverted) {
        QPainterPath rest;
        rest.addRect(rect);
        painter.fillPath(rest.subtracted(shape), m_color);
        return;
    }
    painter.fillPath(shape, m_color);
    if (m_borderWidth > 0 && m_borderColor.alpha() > 0) {
        const double line = std::max(1.0, std::round(m_borderWidth * ratio));
        const QRectF middle = rect.adjusted(line / 2, line / 2, -line / 2, -line / 2);
        painter.strokePath(path(middle, std::max(0.0, m_radius * ratio - line / 2)),
                           QPen(m_borderColor, line));
    }
}
