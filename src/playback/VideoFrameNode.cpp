#include "VideoFrameNode.h"

#include <QQuickWindow>
#include <QSGTexture>

VideoFrameNode::VideoFrameNode(QQuickWindow *window)
    : m_window(window), m_background(window->createRectangleNode()),
      m_picture(std::make_unique<QSGSimpleTextureNode>()) {
    setFlag(UsePreprocess);
    m_background->setColor(Qt::black);
    m_background->setFlag(QSGNode::OwnedByParent, false);
    m_picture->setFlag(QSGNode::OwnedByParent, false);
    m_picture->setFiltering(QSGTexture::Linear);
    m_picture->setOwnsTexture(true);
    appendChildNode(m_background.get());
}

void VideoFrameNode::showTexture(const std::shared_ptr<const VideoTexture> &texture, const QRectF &bounds) {
    if (m_texture != texture) {
        m_picture->setTexture(
            QNativeInterface::QSGOpenGLTexture::fromNative(texture->id(), m_window, texture->size()));
        m_picture->setTextureCoordinatesTransform(QSGSimpleTextureNode::MirrorVertically);
        m_texture = texture;
    }
    show(texture->size(), bounds);
}

void VideoFrameNode::showImage(const QImage &image, const QRectF &bounds) {
    if (m_imageKey != image.cacheKey()) {
        m_picture->setTexture(m_window->createTextureFromImage(image, QQuickWindow::TextureIsOpaque));
        m_imageKey = image.cacheKey();
    }
    show(image.size(), bounds);
}

void VideoFrameNode::preprocess() {
    if (m_texture) {
        m_texture->waitUntilDrawn();
    }
}

void VideoFrameNode::show(const QSize &frame, const QRectF &bounds) {
    m_background->setRect(bounds);
    QRectF fitted(QPointF(), QSizeF(frame).scaled(bounds.size(), Qt::KeepAspectRatio));
    fitted.moveCenter(bounds.center());
    m_picture->setRect(fitted);
    m_picture->markDirty(QSGNode::DirtyMaterial);
    if (!m_picture->parent()) {
        appendChildNode(m_picture.get());
    }
}
