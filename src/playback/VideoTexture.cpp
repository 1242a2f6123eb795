#include "VideoTexture.h"

#include <QOpenGLContext>
#include <QOpenGLExtraFunctions>

VideoTexture::VideoTexture(const QSize &size) : m_size(size) {
    QOpenGLFunctions *gl = QOpenGLContext::currentContext()->functions();
    gl->glGenTextures(1, &m_id);
    gl->glBindTexture(GL_TEXTURE_2D, m_id);
    gl->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, size.width(), size.height(), 0, GL_RGBA, GL_UNSIGNED_BYTE,
                     nullptr);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    gl->glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    gl->glBindTexture(GL_TEXTURE_2D, 0);
}

VideoTexture::~VideoTexture() {
    // Without a context the share group itself has gone, and the texture with it.
    if (QOpenGLContext *context = QOpenGLContext::currentContext()) {
        deleteFence();
        context->functions()->glDeleteTextures(1, &m_id);
    }
}

void VideoTexture::finishDrawing() {
    QOpenGLExtraFunctions *gl = QOpenGLContext::currentContext()->extraFunctions();
    deleteFence();
    m_fence = gl->glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    gl->glFlush();
}

bool VideoTexture::isDrawn() const {
    return !m_fence || QOpenGLContext::currentContext()->extraFunctions()->glClientWaitSync(
                           static_cast<GLsync>(m_fence), 0, 0) != GL_TIMEOUT_EXPIRED;
}

void VideoTexture::waitUntilDrawn() const {
    if (m_fence) {
        QOpenGLContext::currentContext()->extraFunctions()->glWaitSync(static_cast<GLsync>(m_fence), 0,
                                                                       GL_TIMEOUT_IGNORED);
    }
}

void VideoTexture::deleteFence() {
    if (m_fence) {
        QOpenGLContext::currentContext()->extraFunctions()->glDeleteSync(static_cast<GLsync>(m_fence));
        m_fence = nullptr;
    }
}
