#include "SymbolIcon.h"

#include "PixelGrid.h"
#include "SymbolArt.h"

#include <QFont>
#include <QPainter>
#include <QSGImageNode>
#include <QSGTexture>

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

SymbolIcon::SymbolIcon(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
    setImplicitSize(gridSide(), gridSide());
}

void SymbolIcon::setName(const QString &name) {
    if (m_name == name) {
        return;
    }
    m_name = name;
    redraw();
}

void SymbolIcon::setSize(double size) {
    if (m_size == size) {
        return;
    }
    m_size = size;
    setImplicitSize(gridSide(), gridSide());
    redraw();
}

void SymbolIcon::setColor(const QColor &color) {
    if (m_color == color) {
        return;
    }
    m_color = color;
    redraw();
}

void SymbolIcon::setWeight(int weight) {
    if (m_weight == weight) {
        return;
    }
    m_weight = weight;
    redraw();
}

double SymbolIcon::gridSide() const {
    return 2 * std::round(m_size * gridPerPoint / 2);
}

void SymbolIcon::redraw() {
    m_imageStale = true;
    update();
    Q_EMIT changed();
}

QImage SymbolIcon::rasterise(const QString &name, const QColor &color, int weight, QSize pixels,
                             double gridSide) {
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const double scale = gridSide / gridUnits;
    painter.translate((pixels.width() - gridSide) / 2, (pixels.height() - gridSide) / 2);
    painter.scale(scale, scale);

    const double line = std::max(strokeUnits(weight), thinnestLine / scale);
    const auto pen = [](const QColor &of, double width) {
        return QPen(of, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    };
    QColor opaque = color;
    opaque.setAlpha(255);
    for (const SymbolArt::Layer &layer : SymbolArt::layers(name)) {
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
    if (color.alpha() < 255) {
        painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
        painter.resetTransform();
        painter.fillRect(image.rect(), QColor(0, 0, 0, color.alpha()));
    }
    return image;
}

QSGNode *SymbolIcon::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *) {
    auto *node = static_cast<QSGImageNode *>(oldNode);
    const double ratio = PixelGrid::ratioOf(*this);
    const QRectF rect = PixelGrid::snapped(*this, boundingRect());
    const QSize pixels = (rect.size() * ratio).toSize();
    if (pixels.isEmpty()) {
        delete node;
        return nullptr;
    }
    if (node == nullptr) {
        node = window()->createImageNode();
        node->setOwnsTexture(true);
        m_imageStale = true;
    }
    if (m_imageStale || pixels != m_imagePixels) {
        const double side = std::min({gridSide() * ratio, double(pixels.width()), double(pixels.height())});
        const QImage image = rasterise(m_name, m_color, m_weight, pixels, side);
        node->setTexture(window()->createTextureFromImage(image, QQuickWindow::TextureHasAlphaChannel));
        node->setFiltering(QSGTexture::Linear);
        m_imagePixels = pixels;
        m_imageStale = false;
    }
    node->setRect(rect);
    return node;
}

void SymbolIcon::itemChange(ItemChange change, const ItemChangeData &data) {
    if (change == ItemSceneChange && data.window != nullptr) {
        // A window that grows moves what is anchored to its far edges off the pixels it was drawn on.
        connect(data.window, &QQuickWindow::widthChanged, this, &QQuickItem::update);
        connect(data.window, &QQuickWindow::heightChanged, this, &QQuickItem::update);
    }
    if (change == ItemDevicePixelRatioHasChanged) {
        update();
    }
    QQuickItem::itemChange(change, data);
}
