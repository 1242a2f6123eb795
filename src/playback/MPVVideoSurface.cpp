#include "MPVVideoSurface.h"

#include "MPVOpenGLView.h"
#include "VideoFrameNode.h"

#include <QQuickWindow>
#include <QRunnable>
#include <QThread>

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
        connect(m_view, &MPVOpenGLView::contentsChanged, this, &MPVVideoSurface::showContents);
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
    auto *frame = static_cast<VideoFrameNode *>(node);
    if (!hostsView() || m_view->isEmpty() || boundingRect().isEmpty()) {
        delete frame;
        m_shownByOtherThread = false;
        return nullptr;
    }
    if (!frame) {
        frame = new VideoFrameNode(window());
    }
    frame->showFramesOf(m_view->frames(), boundingRect());
    m_shownByOtherThread = QThread::currentThread() != thread();
    return frame;
}

void MPVVideoSurface::showContents() {
    if (!m_shownByOtherThread || m_view->isEmpty() || !window()) {
        update();
        return;
    }
    // The scene fetches the frame. A change of the scene would hold the main thread until the window has been
    // drawn with the frame before.
    window()->scheduleRenderJob(QRunnable::create([window = window()] { window->update(); }),
                                QQuickWindow::NoStage);
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
