#include "SymbolIcon.h"

#include "SymbolArt.h"

#include <QFont>
#include <QPainter>

#include <algorithm>

namespace {

constexpr double gridUnits = 24;
/// How far a symbol's grid exceeds the point size, so that the drawing is about as tall as capitals are wide.
constexpr double gridPerPoint = 1.25;
/// Lines are never thinner than this many pixels, or they would fade.
constexpr double thinnestLine = 1.1;

double strokeUnits(int weight) {
    if (weight <= QFont::Light) {
        return 1.3;
    }
    if (weight <= QFont::Normal) {
        return 1.75;
    }
    if (weight <= QFont::Medium) {
        return 2.0;
    }
    return 2.4;
}

} // namespace

SymbolIcon::SymbolIcon(QQuickItem *parent) : PixelItem(parent) {
    setImplicitSize(gridSide(), gridSide());
}

void SymbolIcon::setSize(double size) {
    set(m_size, size);
    setImplicitSize(gridSide(), gridSide());
}

double SymbolIcon::gridSide() const {
    return 2 * std::round(m_size * gridPerPoint / 2);
}

void SymbolIcon::draw(QImage &image, const QRectF &rect, double ratio) const {
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = std::min({gridSide() * ratio, rect.width(), rect.height()});
    const double scale = side / gridUnits;
    painter.translate(rect.center() - QPointF(side, side) / 2);
    painter.scale(scale, scale);

    const double line = std::max(strokeUnits(m_weight), thinnestLine / scale);
    const auto pen = [](const QColor &of, double width) {
        return QPen(of, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    };
    QColor opaque = m_color;
    opaque.setAlpha(255);
    for (const SymbolArt::Layer &layer : SymbolArt::layers(m_name)) {
        using Kind = SymbolArt::Layer::Kind;
        const bool cuts = layer.kind != Kind::stroke && layer.kind != Kind::fill;
        painter.setCompositionMode(cuts ? QPainter::CompositionMode_DestinationOut
                                        : QPainter::CompositionMode_SourceOver);
        if (layer.kind == Kind::fill || layer.kind == Kind::cutFill) {
            painter.fillPath(layer.path, opaque);
        } else {
            painter.strokePath(layer.path, pen(opaque, layer.kind == Kind::cutStroke ? line * 2.6 : line));
        }
    }
    // The layers overlap: the colour's own opacity applies once, to their union.
    if (m_color.alpha() < 255) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.resetTransform();
        painter.fillRect(image.rect(), QColor(0, 0, 0, m_color.alpha()));
    }
}
