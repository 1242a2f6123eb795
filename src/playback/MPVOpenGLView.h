#pragma once

#include "MPVFunctions.h"
#include "VideoFrameSlot.h"
#include "VideoFramebuffers.h"

#include <QImage>
#include <QObject>
#include <QSize>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

/// What the player draws its video into.
///
/// The frames are drawn on the main thread, into buffers outside any window, when they are due: asked
/// earlier, the player would hold the thread until then. A host (MPVVideoSurface) in a window shows what it
/// finds in frames(): either the frame's texture or, with presentsFramesThroughLayer, a picture of it that
/// was read back from the graphics card.
///
/// Main thread only, except mosa_render_update. Not an item: it takes no pointer events.
class MPVOpenGLView : public QObject {
    Q_OBJECT

public:
    /// The picture that covers the view while it presents its frames through a layer; fitted into the view
    /// with its aspect ratio kept, on black.
    struct PictureLayer {
        QImage contents;
        bool hidden = false;
    };

    explicit MPVOpenGLView(const MPVFunctions &functions = MPVFunctions::standard(),
                           QObject *parent = nullptr);
    ~MPVOpenGLView() override;

    bool presentsFramesThroughLayer() const { return m_presentsFramesThroughLayer; }
    void setPresentsFramesThroughLayer(bool on);
    /// Made when layer presentation is first switched on, and kept; none before.
    const PictureLayer *videoFrameLayer() const { return m_layer ? &*m_layer : nullptr; }
    /// The newest frame, bottom row first; none before the first and after the end.
    std::shared_ptr<const VideoTexture> frame() const { return m_buffers.front(); }
    /// Where the newest frame is fetched by the scene that shows it.
    std::shared_ptr<const VideoFrameSlot> frames() const { return m_frames; }
    /// Nothing is to be shown: before the first frame and after the end.
    bool isEmpty() const;

    /// Called after every draw that showed a new frame.
    void setFrameRenderedHandler(std::function<void()> handler) {
        m_frameRenderedHandler = std::move(handler);
    }

    /// Binds the view to a player: makes the render context. The player's status, 0 or more for success.
    int configureWithMPV(mpv_handle *player);
    /// Asks the player whether a new frame waits; if so, has it drawn.
    void consumeRenderUpdates();
    /// Draws the player's current frame now.
    void draw();
    /// Frees the render context, which must happen before the player is destroyed. A second call does
    /// nothing.
    void shutdownRenderContext();

    /// The one place that shows the view. A new host detaches the one before.
    QObject *host() const { return m_host; }
    void setHost(QObject *host);
    /// The size to draw at, in device pixels; empty while the host is in no window or has no extent, and then
    /// frames only wait.
    void setBackingSize(const QSize &pixels);

Q_SIGNALS:
    /// There is something new in frames(), or nothing any more.
    void contentsChanged();
    void hostChanged();

private:
    friend void mosa_render_update(void *context);

    bool hasDrawable() const { return !m_backingSize.isEmpty(); }
    void setNeedsDisplay();
    std::chrono::microseconds timeUntilNextFrame() const;
    void renderCurrentFrame();
    void showWhenDrawn();
    void presentCurrentFrame();
    void stopOutput();
    void readEvents();
    bool frameWaits() const;
    void dropFrame();
    void handOver();
    bool showsLayer() const { return m_layer && !m_layer->hidden; }

    const MPVFunctions &m_functions;
    VideoFramebuffers m_buffers;
    std::shared_ptr<VideoFrameSlot> m_frames = std::make_shared<VideoFrameSlot>();
    bool m_presentsFramesThroughLayer = false;
    std::optional<PictureLayer> m_layer;
    mpv_handle *m_player = nullptr;
    mpv_render_context *m_renderContext = nullptr;
    /// The player has opened a file, and may have an output.
    bool m_hasFile = false;
    bool m_hasPendingVideoFrame = false;
    bool m_frameAnnounced = false;
    /// Drawn, but not yet shown.
    bool m_drewNewFrame = false;
    /// To be drawn as soon as what has been drawn is shown.
    bool m_drawsOnceShown = false;
    std::function<void()> m_frameRenderedHandler;
    QObject *m_host = nullptr;
    QSize m_backingSize;
    /// Fires when the view is to be drawn.
    QTimer m_displayTimer;
    QTimer m_showTimer;
    /// A notice of the player is on its way to the main thread.
    std::atomic_flag m_noticePosted = ATOMIC_FLAG_INIT;
};

/// The address of the named OpenGL function in the current context; context is not used.
void *mosa_get_proc_address(void *context, const char *name);
/// The player's notice that something is to be drawn; context is the view. Any thread: only posts
/// consumeRenderUpdates to the main thread.
void mosa_render_update(void *context);
