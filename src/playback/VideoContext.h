#pragma once

#include <memory>
#include <mutex>

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

    /// Where software draws, waits while a window is being drawn, and keeps windows waiting until
    /// doneCurrent(): see DrawingTurns.
    bool makeCurrent();
    /// False at once where makeCurrent() would wait.
    bool tryMakeCurrent();
    void doneCurrent();
    QOpenGLFunctions *functions() const;

private:
    VideoContext();
    bool isValid() const;
    bool drawsInSoftware();

    std::unique_ptr<QOpenGLContext> m_context;
    std::unique_ptr<QOffscreenSurface> m_surface;
    bool m_takesTurns = true;
    std::unique_lock<std::timed_mutex> m_turn;
};
