#pragma once

#include "VideoTexture.h"

#include <QImage>
#include <QSGRectangleNode>
#include <QSGSimpleTextureNode>

#include <memory>

class QQuickWindow;

/// A video frame in the scene graph, fitted into a rectangle with its aspect ratio kept, on black.
///
/// Render thread, while the main thread waits.
class VideoFrameNode : public QSGNode {
public:
    explicit VideoFrameNode(QQuickWindow *window);

    /// Keeps the texture alive for as long as it is shown. Its rows come bottom first.
    void showTexture(const std::shared_ptr<const VideoTexture> &texture, const QRectF &bounds);
    void showImage(const QImage &image, const QRectF &bounds);

    /// As late as possible: the main thread goes on by now.
    void preprocess() override;

private:
    void show(const QSize &frame, const QRectF &bounds);
    QRectF placeOf(const QSize &frame, const QRectF &bounds);

    QQuickWindow *m_window;
    std::unique_ptr<QSGRectangleNode> m_background;
    std::shared_ptr<const VideoTexture> m_texture;
    qint64 m_imageKey = 0;
    std::unique_ptr<QSGSimpleTextureNode> m_picture;
};
