#include "VideoFrameNode.h"

#include <QQuickWindow>
#include <QSGTexture>

#include <cmath>

VideoFrameNode::VideoFrameNode(QQuickWindow *window)
    : m_window(window), m_background(window->createRectangleNode()),
      m_picture(std::make_unique<QSGSimpleTextureNode>()) {
    setFlag(UsePreprocess);
    m_background->setColor(Qt::black);
    m_background->setFlag(QSGNode::OwnedByParent, false);
    m_picture->setFlag(QSGNode::OwnedByParent, false);
    m_picture->setOwnsTexture(true);
    appendChildNode(m_picture.get());
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
    const QRectF place = placeOf(frame, bounds);
    const bool covers = place.contains(bounds);
    if (covers && m_background->parent()) {
        removeChildNode(m_background.get());
    } else if (!covers && !m_background->parent()) {
        prependChildNode(m_background.get());
    }
    m_background->setRect(bounds);
    m_picture->setRect(place);
    m_picture->markDirty(QSGNode::DirtyMaterial);
}

/// A frame made for these bounds, down to whole pixels, is shown pixel by pixel: sharper at fractional
/// scales, and without a graphics processor a good part of the window's drawing less, as is the background
/// where it is not seen.
QRectF VideoFrameNode::placeOf(const QSize &frame, const QRectF &bounds) {
    const double ratio = m_window->effectiveDevicePixelRatio();
    const QSizeF natural = QSizeF(frame) / ratio;
    const QSizeF rest = (bounds.size() - natural) * ratio;
    const bool exact = std::abs(rest.width()) < 1 && std::abs(rest.height()) < 1;
    m_picture->setFiltering(exact ? QSGTexture::Nearest : QSGTexture::Linear);
    if (exact) {
        return {bounds.topLeft(), natural};
    }
    QRectF fitted(QPointF(), QSizeF(frame).scaled(bounds.size(), Qt::KeepAspectRatio));
    fitted.moveCenter(bounds.center());
    return fitted;
}
