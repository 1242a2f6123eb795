#include "VideoContext.h"

#include "DrawingTurns.h"

#include <QCoreApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <chrono>

namespace {

std::shared_ptr<VideoContext> &kept() {
    static std::shared_ptr<VideoContext> context;
    return context;
}

/// A window that takes longer to draw than this is not waited for.
constexpr std::chrono::milliseconds longestFrame{500};

QSurfaceFormat drawableFormat() {
    QSurfaceFormat format;
    format.setVersion(3, 2);
    format.setProfile(QSurfaceFormat::CoreProfile);
    format.setRedBufferSize(8);
    format.setGreenBufferSize(8);
    format.setBlueBufferSize(8);
    format.setAlphaBufferSize(8);
    format.setDepthBufferSize(0);
    format.setStencilBufferSize(0);
    return format;
}

} // namespace

std::shared_ptr<VideoContext> VideoContext::shared() {
    if (!kept()) {
        std::shared_ptr<VideoContext> made(new VideoContext);
        if (!made->isValid()) {
            return nullptr;
        }
        kept() = std::move(made);
        // With the application object, and before the connection to the display that it owns.
        qAddPostRoutine([] { kept().reset(); });
    }
    return kept();
}

VideoContext::VideoContext()
    : m_context(std::make_unique<QOpenGLContext>()), m_surface(std::make_unique<QOffscreenSurface>()),
      m_turn(DrawingTurns::turn(), std::defer_lock) {
    m_context->setFormat(drawableFormat());
    m_context->setShareContext(QOpenGLContext::globalShareContext());
    if (m_context->create()) {
        m_surface->setFormat(m_context->format());
        m_surface->create();
        m_takesTurns = drawsInSoftware();
    }
}

VideoContext::~VideoContext() = default;

bool VideoContext::isValid() const {
    return m_context->isValid() && m_surface->isValid();
}

bool VideoContext::drawsInSoftware() {
    if (!makeCurrent()) {
        return true;
    }
    const QByteArray renderer(reinterpret_cast<const char *>(functions()->glGetString(GL_RENDERER)));
    doneCurrent();
    return renderer.contains("llvmpipe") || renderer.contains("softpipe");
}

bool VideoContext::makeCurrent() {
    if (m_takesTurns) {
        m_turn.try_lock_for(longestFrame);
    }
    if (m_context->makeCurrent(m_surface.get())) {
        return true;
    }
    doneCurrent();
    return false;
}

bool VideoContext::tryMakeCurrent() {
    if (m_takesTurns && !m_turn.try_lock()) {
        return false;
    }
    m_context->makeCurrent(m_surface.get());
    return true;
}

void VideoContext::doneCurrent() {
    m_context->doneCurrent();
    if (m_turn.owns_lock()) {
        m_turn.unlock();
    }
}

QOpenGLFunctions *VideoContext::functions() const {
    return m_context->functions();
}
