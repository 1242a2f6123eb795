#include "VideoContext.h"

#include <QCoreApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>

namespace {

std::shared_ptr<VideoContext> &kept() {
    static std::shared_ptr<VideoContext> context;
    return context;
}

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
    : m_context(std::make_unique<QOpenGLContext>()), m_surface(std::make_unique<QOffscreenSurface>()) {
    m_context->setFormat(drawableFormat());
    m_context->setShareContext(QOpenGLContext::globalShareContext());
    if (m_context->create()) {
        m_surface->setFormat(m_context->format());
        m_surface->create();
    }
}

VideoContext::~VideoContext() = default;

bool VideoContext::isValid() const {
    return m_context->isValid() && m_surface->isValid();
}

bool VideoContext::makeCurrent() {
    return m_context->makeCurrent(m_surface.get());
}

void VideoContext::doneCurrent() {
    m_context->doneCurrent();
}

QOpenGLFunctions *VideoContext::functions() const {
    return m_context->functions();
}
