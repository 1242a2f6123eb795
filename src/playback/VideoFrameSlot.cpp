#include "VideoFrameSlot.h"

void VideoFrameSlot::put(const std::shared_ptr<const VideoTexture> &texture) {
    const std::lock_guard lock(m_mutex);
    m_texture = texture;
    m_picture = {};
    ++m_number;
}

void VideoFrameSlot::put(const QImage &picture) {
    const std::lock_guard lock(m_mutex);
    m_texture.reset();
    m_picture = picture;
    ++m_number;
}

void VideoFrameSlot::clear() {
    const std::lock_guard lock(m_mutex);
    m_texture.reset();
    m_picture = {};
}

VideoFrameSlot::Frame VideoFrameSlot::newest() const {
    const std::lock_guard lock(m_mutex);
    return {m_texture.lock(), m_picture, m_number};
}
