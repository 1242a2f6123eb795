#include "VideoFrameNode.h"

#include <QQuickWindow>
#include <QSGTexture>

#include <cmath>
#include <utility>

VideoFrameNode::VideoFrameNode(QQuickWindow *window)
    : m_window(window), m_background(window->createRectangleNode()),
      m_picture(std::make_unique<QSGSimpleTextureNode>()) {
    setFlag(UsePreprocess);
    m_background->setColor(Qt::black);
    m_background->setFlag(QSGNode::OwnedByParent, false);
    m_picture->setFlag(QSGNode::OwnedByParent, false);
    m_picture->setOwnsTexture(true);
}

void VideoFrameNode::showFramesOf(const std::shared_ptr<const VideoFrameSlot> &slot, const QRectF &bounds) {
    if (m_slot != slot) {
        m_slot = slot;
        m_frame.number = 0; // another view counts its own frames
    }
    m_bounds = bounds;
    fetchFrame();
    place();
}

void VideoFrameNode::preprocess() {
    fetchFrame();
    if (m_frame.texture) {
        m_frame.texture->waitUntilDrawn();
    }
}

void VideoFrameNode::fetchFrame() {
    VideoFrameSlot::Frame newest = m_slot->newest();
    if (newest.number == m_frame.number || (!newest.texture && newest.picture.isNull())) {
        return;
    }
    if (!newest.texture) {
        m_picture->setTexture(
            m_window->createTextureFromImage(newest.picture, QQuickWindow::TextureIsOpaque));
        m_picture->setTextureCoordinatesTransform(QSGSimpleTextureNode::NoTransform);
    } else if (newest.texture != m_frame.texture) {
        m_picture->setTexture(QNativeInterface::QSGOpenGLTexture::fromNative(newest.texture->id(), m_window,
                                                                             newest.texture->size()));
        m_picture->setTextureCoordinatesTransform(QSGSimpleTextureNode::MirrorVertically);
    }
    m_frame = std::move(newest);
    if (!m_picture->parent()) {
        appendChildNode(m_picture.get());
    }
    place();
}

void VideoFrameNode::place() {
    if (!m_picture->parent()) {
        return;
    }
    const QRectF place = placeOfFrame();
    const bool covers = place.contains(m_bounds);
    if (covers && m_background->parent()) {
        removeChildNode(m_background.get());
    } else if (!covers && !m_background->parent()) {
        prependChildNode(m_background.get());
    }
    m_background->setRect(m_bounds);
    m_picture->setRect(place);
    m_picture->markDirty(QSGNode::DirtyMaterial);
}

/// A frame made for these bounds, down to whole pixels, is shown pixel by pixel: sharper at fractional
/// scales, and without a graphics processor a good part of the window's drawing less, as is the background
/// where it is not seen.
QRectF VideoFrameNode::placeOfFrame() {
    const QSize frame = m_frame.texture ? m_frame.texture->size() : m_frame.picture.size();
    const double ratio = m_window->effectiveDevicePixelRatio();
    const QSizeF natural = QSizeF(frame) / ratio;
    const QSizeF rest = (m_bounds.size() - natural) * ratio;
    const bool exact = std::abs(rest.width()) < 1 && std::abs(rest.height()) < 1;
    m_picture->setFiltering(exact ? QSGTexture::Nearest : QSGTexture::Linear);
    if (exact) {
        return {m_bounds.topLeft(), natural};
    }
    QRectF fitted(QPointF(), QSizeF(frame).scaled(m_bounds.size(), Qt::KeepAspectRatio));
    fitted.moveCenter(m_bounds.center());
    return fitted;
}
