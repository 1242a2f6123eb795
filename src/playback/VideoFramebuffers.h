#pragma once

#include "VideoTexture.h"

#include <QImage>
#include <QSize>

#include <array>
#include <memory>

class VideoContext;

/// A double-buffered drawable outside any window: two framebuffers of the videos' OpenGL context, whose
/// textures the windows can show.
///
/// Main thread. Where the desktop offers no OpenGL, everything below does nothing.
class VideoFramebuffers {
public:
    VideoFramebuffers();
    ~VideoFramebuffers();
    VideoFramebuffers(const VideoFramebuffers &) = delete;
    VideoFramebuffers &operator=(const VideoFramebuffers &) = delete;

    bool makeCurrent();
    /// False when a window is being drawn that a video must not disturb; then nothing is current.
    bool tryMakeCurrent();
    void doneCurrent();

    /// A window still shows the older frame; bindBack() then gives up the newer one, which it must not show
    /// any more.
    bool isBackShown() const;
    /// Binds the framebuffer to draw into, at least 1 by 1 pixels, and returns its name; 0 without OpenGL.
    /// The contents are those of an older frame. Needs makeCurrent(), as do the next three.
    unsigned bindBack(const QSize &size);
    void clearToBlack();
    /// The pixels of the back buffer, top row first. Binds the buffer again: the player bound its own.
    QImage readBack();
    /// Makes the back buffer the front one. What was drawn is handed to the graphics card at once.
    void swap();

    /// The newest finished frame, bottom row first; none before the first swap() and after release().
    std::shared_ptr<const VideoTexture> front() const;
    /// Frees both buffers; a texture that is still shown lives on until it is not. Needs makeCurrent().
    void release();

private:
    struct Buffer {
        std::shared_ptr<VideoTexture> texture;
        unsigned framebuffer = 0;
    };

    void allocate(Buffer &buffer, const QSize &size);
    void free(Buffer &buffer);

    std::shared_ptr<VideoContext> m_context;
    std::array<Buffer, 2> m_buffers;
    int m_back = 0;
    bool m_swapped = false;
};

/// Turns a picture of height rows of stride bytes upside down, in place.
void flipRows(uchar *pixels, qsizetype stride, qsizetype height);
