#include "MPVVideoSurface.h"

#include "MPVOpenGLView.h"
#include "VideoFrameNode.h"

#include <QQuickWindow>

#include <cmath>

MPVVideoSurface::MPVVideoSurface(QQuickItem *parent) : QQuickItem(parent) {
    setFlag(ItemHasContents);
}

MPVVideoSurface::~MPVVideoSurface() {
    detach();
}

void MPVVideoSurface::setController(MPVPlayerController *controller) {
    if (m_controller == controller) {
        return;
    }
    detach();
    m_controller = controller;
    m_view = controller ? controller->surface() : nullptr;
    if (m_view) {
        connect(m_view, &MPVOpenGLView::contentsChanged, this, &QQuickItem::update);
        connect(m_view, &MPVOpenGLView::hostChanged, this, &QQuickItem::update);
        m_view->setHost(this);
        updateBackingSize();
    }
    update();
    Q_EMIT controllerChanged();
}

bool MPVVideoSurface::contains(const QPointF &point) const {
    Q_UNUSED(point)
    return false;
}

void MPVVideoSurface::geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) {
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    updateBackingSize();
    update();
}

void MPVVideoSurface::itemChange(ItemChange change, const ItemChangeData &value) {
    QQuickItem::itemChange(change, value);
    if (change == ItemSceneChange || change == ItemDevicePixelRatioHasChanged) {
        updateBackingSize();
    }
}

QSGNode *MPVVideoSurface::updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) {
    Q_UNUSED(data)
    const MPVOpenGLView::PictureLayer *layer = hostsView() ? m_view->videoFrameLayer() : nullptr;
    const bool throughLayer = layer && !layer->hidden;
    const auto texture = hostsView() && !throughLayer ? m_view->frame() : nullptr;
    const bool empty = throughLayer ? layer->contents.isNull() : texture == nullptr;
    auto *frame = static_cast<VideoFrameNode *>(node);
    if (empty || boundingRect().isEmpty()) {
        delete frame;
        return nullptr;
    }
    if (!frame) {
        frame = new VideoFrameNode(window());
    }
    if (throughLayer) {
        frame->showImage(layer->contents, boundingRect());
    } else {
        frame->showTexture(texture, boundingRect());
    }
    return frame;
}

bool MPVVideoSurface::hostsView() const {
    return m_view && m_view->host() == this;
}

void MPVVideoSurface::detach() {
    if (m_view) {
        disconnect(m_view, nullptr, this, nullptr);
        if (hostsView()) {
            m_view->setHost(nullptr);
        }
        m_view = nullptr;
    }
}

void MPVVideoSurface::updateBackingSize() {
    if (hostsView()) {
        const double ratio = window() ? window()->effectiveDevicePixelRatio() : 0;
        m_view->setBackingSize(QSize(int(width() * ratio), int(height() * ratio)));
    }
}
