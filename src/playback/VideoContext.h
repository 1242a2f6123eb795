#pragma once

#include <memory>

class QOffscreenSurface;
class QOpenGLContext;
class QOpenGLFunctions;

/// The OpenGL context (3.2 core, sharing with the windows' contexts) and the surface outside any window in
/// which all videos are drawn, one after the other.
///
/// Main thread. One context serves the whole run of the program: making one costs milliseconds whenever a
/// preview starts, and the end of one goes through the textures of all others, which Mesa does not guard
/// against a window's thread that makes and frees its own meanwhile. It ends with the application object.
class VideoContext {
public:
    /// Null where the desktop offers no OpenGL.
    static std::shared_ptr<VideoContext> shared();

    ~VideoContext();
    VideoContext(const VideoContext &) = delete;
    VideoContext &operator=(const VideoContext &) = delete;

    bool makeCurrent();
    void doneCurrent();
    QOpenGLFunctions *functions() const;

private:
    VideoContext();
    bool isValid() const;

    std::unique_ptr<QOpenGLContext> m_context;
    std::unique_ptr<QOffscreenSurface> m_surface;
};
