#pragma once

#include "VideoTexture.h"

#include <QImage>

#include <memory>
#include <mutex>

/// Where a view leaves its newest frame for the scene that shows it.
///
/// Any thread. The scene fetches the frame in the thread that draws the window, so that the main thread need
/// not wait, frame by frame, until the window has drawn the one before.
class VideoFrameSlot {
public:
    /// Either a texture or a picture; neither, when there is nothing to show or nothing new.
    struct Frame {
        std::shared_ptr<const VideoTexture> texture;
        QImage picture;
        /// Differs from frame to frame, also where a texture is drawn into again.
        quint64 number = 0;
    };

    void put(const std::shared_ptr<const VideoTexture> &texture);
    void put(const QImage &picture);
    /// From here on no one fetches what was put before.
    void clear();

    Frame newest() const;

private:
    mutable std::mutex m_mutex;
    /// The buffers own it; the slot must not be the one that lets go last, in a thread without a context.
    std::weak_ptr<const VideoTexture> m_texture;
    QImage m_picture;
    quint64 m_number = 0;
};
