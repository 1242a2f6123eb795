#include "VideoFramebuffers.h"

#include "VideoContext.h"

#include <QOpenGLFunctions>

#include <algorithm>
#include <cstring>
#include <vector>

VideoFramebuffers::VideoFramebuffers() : m_context(VideoContext::shared()) {}

VideoFramebuffers::~VideoFramebuffers() {
    if (makeCurrent()) {
        release();
        doneCurrent();
    }
}

bool VideoFramebuffers::makeCurrent() {
    return m_context && m_context->makeCurrent();
}

bool VideoFramebuffers::tryMakeCurrent() {
    return !m_context || m_context->tryMakeCurrent();
}

void VideoFramebuffers::doneCurrent() {
    if (m_context) {
        m_context->doneCurrent();
    }
}

bool VideoFramebuffers::isBackShown() const {
    return m_swapped && m_buffers[m_back].texture.use_count() > 1;
}

unsigned VideoFramebuffers::bindBack(const QSize &size) {
    if (!m_context) {
        return 0;
    }
    if (isBackShown()) {
        m_back = 1 - m_back;
    }
    Buffer &back = m_buffers[m_back];
    if (!back.texture || back.texture->size() != size) {
        free(back);
        allocate(back, size);
    }
    m_context->functions()->glBindFramebuffer(GL_FRAMEBUFFER, back.framebuffer);
    return back.framebuffer;
}

void VideoFramebuffers::clearToBlack() {
    if (m_context) {
        m_context->functions()->glClearColor(0, 0, 0, 1);
        m_context->functions()->glClear(GL_COLOR_BUFFER_BIT);
    }
}

QImage VideoFramebuffers::readBack() {
    const Buffer &back = m_buffers[m_back];
    if (!m_context || !back.texture) {
        return {};
    }
    const QSize size = back.texture->size();
    QImage image(size, QImage::Format_RGBA8888_Premultiplied);
    if (image.isNull()) {
        return {};
    }
    QOpenGLFunctions *gl = m_context->functions();
    gl->glBindFramebuffer(GL_FRAMEBUFFER, back.framebuffer);
    gl->glReadPixels(0, 0, size.width(), size.height(), GL_RGBA, GL_UNSIGNED_BYTE, image.bits());
    flipRows(image.bits(), image.bytesPerLine(), size.height());
    return image;
}

void VideoFramebuffers::swap() {
    if (!m_context) {
        return;
    }
    if (m_buffers[m_back].texture) {
        m_buffers[m_back].texture->finishDrawing();
    }
    m_back = 1 - m_back;
    m_swapped = true;
}

std::shared_ptr<const VideoTexture> VideoFramebuffers::front() const {
    return m_swapped ? m_buffers[1 - m_back].texture : nullptr;
}

void VideoFramebuffers::release() {
    for (Buffer &buffer : m_buffers) {
        free(buffer);
    }
    m_swapped = false;
}

void VideoFramebuffers::allocate(Buffer &buffer, const QSize &size) {
    QOpenGLFunctions *gl = m_context->functions();
    buffer.texture = std::make_shared<VideoTexture>(size);
    gl->glGenFramebuffers(1, &buffer.framebuffer);
    gl->glBindFramebuffer(GL_FRAMEBUFFER, buffer.framebuffer);
    gl->glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, buffer.texture->id(), 0);
}

void VideoFramebuffers::free(Buffer &buffer) {
    if (buffer.framebuffer != 0) {
        m_context->functions()->glDeleteFramebuffers(1, &buffer.framebuffer);
    }
    buffer = {};
}

void flipRows(uchar *pixels, qsizetype stride, qsizetype height) {
    std::vector<uchar> spare(size_t(std::max<qsizetype>(stride, 0)));
    for (qsizetype row = 0; row < height - 1 - row; ++row) {
        uchar *upper = pixels + row * stride;
        uchar *lower = pixels + (height - 1 - row) * stride;
        std::memcpy(spare.data(), upper, size_t(stride));
        std::memcpy(upper, lower, size_t(stride));
        std::memcpy(lower, spare.data(), size_t(stride));
    }
}
