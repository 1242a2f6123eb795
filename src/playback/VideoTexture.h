#pragma once

#include <QSize>

/// One colour texture that a finished video frame lies in.
///
/// Shared between the view that draws it and the scene graph node that shows it; whichever lets go last
/// deletes it, on its own thread, with its own context (both are of one share group) current.
class VideoTexture {
public:
    /// Allocates size pixels, RGBA, 8 bits each, in the current context.
    explicit VideoTexture(const QSize &size);
    ~VideoTexture();
    VideoTexture(const VideoTexture &) = delete;
    VideoTexture &operator=(const VideoTexture &) = delete;

    unsigned id() const { return m_id; }
    QSize size() const { return m_size; }

    /// After the frame's last drawing command, with the drawing context current: hands the commands to the
    /// graphics card.
    void finishDrawing();
    /// Whether the card is through with them. Any context of the share group.
    bool isDrawn() const;
    /// Before the frame is shown, with the showing context current: makes the card, not the caller, wait.
    void waitUntilDrawn() const;

private:
    void deleteFence();

    unsigned m_id = 0;
    void *m_fence = nullptr;
    QSize m_size;
};
