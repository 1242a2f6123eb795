#include "PixelItem.h"

#include "PixelGrid.h"

#include <QSGNinePatchNode>

PixelItem::PixelItem(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

QImage PixelItem::picture(QSizeF points, double ratio) const {
    const double beyond = margin();
    QImage image(((points + QSizeF(2 * beyond, 2 * beyond)) * ratio).toSize(),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    draw(image, QRectF(QPointF(beyond, beyond) * ratio, points * ratio), ratio);
    return image;
}

QSGNode *PixelItem::updatePaintNode(QSGNode *oldNode, UpdatePaintNodeData *) {
    auto *node = static_cast<QSGNinePatchNode *>(oldNode);
    const double ratio = PixelGrid::ratioOf(*this);
    const QRectF rect = PixelGrid::snapped(*this, boundingRect());
    if (rect.isEmpty()) {
        delete node;
        return nullptr;
    }
    if (node == nullptr) {
        node = window()->createNinePatchNode();
        m_stale = true;
    }
    const QSizeF points = pictureSize(rect.size());
    if (m_stale || points != m_drawnPoints || ratio != m_drawnRatio) {
        node->setTexture(
            window()->createTextureFromImage(picture(points, ratio), QQuickWindow::TextureHasAlphaChannel));
        m_drawnPoints = points;
        m_drawnRatio = ratio;
        m_stale = false;
    }
    const double beyond = margin();
    const double across = points.width() / 2 + beyond;
    const double down = points.height() / 2 + beyond;
    node->setBounds(rect.adjusted(-beyond, -beyond, beyond, beyond));
    node->setDevicePixelRatio(ratio);
    node->setPadding(across, down, across, down);
    node->update();
    return node;
}

void PixelItem::itemChange(ItemChange change, const ItemChangeData &data) {
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
