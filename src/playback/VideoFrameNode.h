#pragma once

#include "VideoFrameSlot.h"

#include <QSGRectangleNode>
#include <QSGSimpleTextureNode>

#include <memory>

class QQuickWindow;

/// The newest frame of a video in the scene graph, fitted into a rectangle with its aspect ratio kept, on
/// black. It fetches each frame by itself when the window is drawn anew.
///
/// Render thread.
class VideoFrameNode : public QSGNode {
public:
    explicit VideoFrameNode(QQuickWindow *window);

    /// While the main thread waits.
    void showFramesOf(const std::shared_ptr<const VideoFrameSlot> &slot, const QRectF &bounds);

    void preprocess() override;

private:
    void fetchFrame();
    void place();
    QRectF placeOfFrame();

    QQuickWindow *m_window;
    std::shared_ptr<const VideoFrameSlot> m_slot;
    QRectF m_bounds;
    /// What is shown. A texture is kept alive for as long as it is, its rows bottom first.
    VideoFrameSlot::Frame m_frame;
    std::unique_ptr<QSGRectangleNode> m_background;
    std::unique_ptr<QSGSimpleTextureNode> m_picture;
};
