#include "MPVOpenGLView.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QOpenGLContext>
#include <QThread>

#include <mpv/render_gl.h>

#include <algorithm>
#include <thread>

#include <dlfcn.h>

namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;

/// No frame is announced longer ahead than this; a due time further off comes from a clock that jumped.
constexpr milliseconds longestWait{100};

/// How often the graphics card is asked whether it is through with a frame.
constexpr milliseconds drawnInterval{1};

/// How often a view tries to draw while a window is being drawn that it must not disturb.
constexpr milliseconds turnInterval{1};

/// The longest that a player is waited for to put away its output; usually it takes a few milliseconds.
constexpr milliseconds longestEnd{30};

bool onMainThread() {
    return QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread();
}

} // namespace

void *mosa_get_proc_address(void *context, const char *name) {
    Q_UNUSED(context)
    if (QOpenGLContext *current = QOpenGLContext::currentContext()) {
        return reinterpret_cast<void *>(current->getProcAddress(name));
    }
    return dlsym(RTLD_DEFAULT, name);
}

void mosa_render_update(void *context) {
    auto *view = static_cast<MPVOpenGLView *>(context);
    // The player calls this no more once the callback is taken back, so that the view exists here; a notice
    // that is still on its way then goes with the view.
    if (!view->m_noticePosted.test_and_set()) {
        QMetaObject::invokeMethod(view, &MPVOpenGLView::consumeRenderUpdates, Qt::QueuedConnection);
    }
}

MPVOpenGLView::MPVOpenGLView(const MPVFunctions &functions, QObject *parent)
    : QObject(parent), m_functions(functions) {
    m_displayTimer.setSingleShot(true);
    m_displayTimer.setTimerType(Qt::PreciseTimer);
    m_displayTimer.callOnTimeout(this, &MPVOpenGLView::draw);
    m_showTimer.setSingleShot(true);
    m_showTimer.setTimerType(Qt::PreciseTimer);
    m_showTimer.callOnTimeout(this, &MPVOpenGLView::showWhenDrawn);
}

MPVOpenGLView::~MPVOpenGLView() {
    shutdownRenderContext();
}

void MPVOpenGLView::setPresentsFramesThroughLayer(bool on) {
    m_presentsFramesThroughLayer = on;
    if (on && !m_layer) {
        m_layer = PictureLayer{};
    }
    if (m_layer) {
        m_layer->hidden = !on;
    }
    handOver();
}

bool MPVOpenGLView::isEmpty() const {
    return showsLayer() ? m_layer->contents.isNull() : m_buffers.front() == nullptr;
}

void MPVOpenGLView::handOver() {
    if (isEmpty()) {
        m_frames->clear();
    } else if (showsLayer()) {
        m_frames->put(m_layer->contents);
    } else {
        m_frames->put(m_buffers.front());
    }
    Q_EMIT contentsChanged();
}

int MPVOpenGLView::configureWithMPV(mpv_handle *player) {
    if (!onMainThread()) {
        qFatal("The renderer must be created on the main thread.");
    }
    m_buffers.makeCurrent();
    mpv_opengl_init_params glParams{};
    glParams.get_proc_address = mosa_get_proc_address;
    mpv_render_param parameters[] = {
        {MPV_RENDER_PARAM_API_TYPE, const_cast<char *>(MPV_RENDER_API_TYPE_OPENGL)},
        {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &glParams},
        {MPV_RENDER_PARAM_INVALID, nullptr},
    };
    mpv_render_context *created = nullptr;
    const int status = m_functions.renderContextCreate(&created, player, parameters);
    if (status >= 0) {
        m_player = player;
        m_renderContext = created;
        m_functions.renderContextSetUpdateCallback(m_renderContext, mosa_render_update, this);
        // Frames come when they are due. The player would otherwise hand each over 50 ms ahead, and its
        // output thread, and with it the end of the view, would be held until the frame's time.
        m_functions.setPropertyString(m_player, "video-timing-offset", "0");
    }
    m_buffers.doneCurrent();
    return status;
}

void MPVOpenGLView::consumeRenderUpdates() {
    m_noticePosted.clear();
    if (!m_renderContext) {
        return;
    }
    readEvents(); // unread, they would fill the player's queue
    if (frameWaits()) {
        m_frameAnnounced = true;
        m_hasPendingVideoFrame = true;
        setNeedsDisplay();
    }
}

void MPVOpenGLView::setNeedsDisplay() {
    if (!hasDrawable()) {
        return;
    }
    // Rounded down: the rest, below a millisecond, is waited for in the render call.
    const auto wait = std::chrono::floor<milliseconds>(timeUntilNextFrame());
    m_displayTimer.start(std::clamp(wait, milliseconds::zero(), longestWait));
}

microseconds MPVOpenGLView::timeUntilNextFrame() const {
    if (!m_renderContext) {
        return microseconds::zero();
    }
    mpv_render_frame_info info{};
    if (m_functions.renderContextGetInfo(m_renderContext, {MPV_RENDER_PARAM_NEXT_FRAME_INFO, &info}) < 0 ||
        (info.flags & MPV_RENDER_FRAME_INFO_PRESENT) == 0 || info.target_time <= 0) {
        return microseconds::zero();
    }
    return microseconds(info.target_time - m_functions.getTimeUs(m_player));
}

void MPVOpenGLView::draw() {
    if (!hasDrawable()) {
        return;
    }
    if (m_showTimer.isActive()) {
        // Drawing on would replace each frame before it is shown, where drawing takes longer than a frame
        // lasts.
        m_drawsOnceShown = true;
        return;
    }
    if (!m_buffers.tryMakeCurrent()) {
        m_displayTimer.start(turnInterval);
        return;
    }
    renderCurrentFrame();
    m_buffers.swap();
    if (m_renderContext) {
        m_functions.renderContextReportSwap(m_renderContext);
    }
    m_buffers.doneCurrent();
    // Another frame may be announced before this one is shown.
    m_drewNewFrame = std::exchange(m_hasPendingVideoFrame, false);
    showWhenDrawn();
}

/// A graphics card, and even more so software in its place, still draws when the commands for it have been
/// given. A window that showed the frame at once would hold its thread until then.
void MPVOpenGLView::showWhenDrawn() {
    bool drawn = false;
    if (m_buffers.tryMakeCurrent()) {
        const auto texture = m_buffers.front();
        drawn = !texture || texture->isDrawn();
        m_buffers.doneCurrent();
    }
    if (!drawn) {
        m_showTimer.start(drawnInterval);
        return;
    }
    handOver();
    if (std::exchange(m_drewNewFrame, false) && m_frameRenderedHandler) {
        m_frameRenderedHandler();
    }
    if (std::exchange(m_drawsOnceShown, false)) {
        setNeedsDisplay();
    }
}

void MPVOpenGLView::renderCurrentFrame() {
    if (m_buffers.isBackShown()) {
        // The window has not come to the newer frame yet, which is given up.
        m_frames->clear();
    }
    const int framebuffer = int(m_buffers.bindBack(m_backingSize));
    m_buffers.clearToBlack();
    if (!m_renderContext) {
        return;
    }
    mpv_opengl_fbo target{framebuffer, m_backingSize.width(), m_backingSize.height(), 0};
    int flip = 1;
    mpv_render_param parameters[] = {
        {MPV_RENDER_PARAM_OPENGL_FBO, &target},
        {MPV_RENDER_PARAM_FLIP_Y, &flip},
        {MPV_RENDER_PARAM_INVALID, nullptr},
    };
    m_functions.renderContextRender(m_renderContext, parameters);
    if (m_presentsFramesThroughLayer) {
        presentCurrentFrame();
    }
}

void MPVOpenGLView::presentCurrentFrame() {
    m_layer->contents = m_buffers.readBack();
}

void MPVOpenGLView::setHost(QObject *host) {
    if (m_host == host) {
        return;
    }
    m_host = host;
    m_backingSize = {};
    m_displayTimer.stop();
    Q_EMIT hostChanged();
}

void MPVOpenGLView::setBackingSize(const QSize &pixels) {
    if (pixels == m_backingSize) {
        return;
    }
    const bool joinsWindow = !hasDrawable() && !pixels.isEmpty();
    m_backingSize = pixels;
    if (joinsWindow && m_renderContext) {
        consumeRenderUpdates();
        // Shown anew, even when the player has nothing new. Before its first frame there is nothing to show.
        m_hasPendingVideoFrame = m_frameAnnounced;
    }
    if (hasDrawable()) {
        setNeedsDisplay();
    } else {
        m_displayTimer.stop();
    }
}

void MPVOpenGLView::shutdownRenderContext() {
    if (!onMainThread()) {
        qFatal("The renderer must be destroyed on the main thread.");
    }
    m_displayTimer.stop();
    m_showTimer.stop();
    m_buffers.makeCurrent();
    if (m_renderContext) {
        m_functions.renderContextSetUpdateCallback(m_renderContext, nullptr, nullptr);
        stopOutput();
        m_functions.renderContextFree(m_renderContext);
        m_renderContext = nullptr;
        m_player = nullptr;
    }
    if (m_layer) {
        m_layer->contents = {};
    }
    m_buffers.release();
    m_buffers.doneCurrent();
    m_hasPendingVideoFrame = false;
    m_drewNewFrame = false;
    m_drawsOnceShown = false;
    handOver();
}

/// Freeing the context ends the player's output thread, and that would wait for 200 ms for every frame that
/// it has announced and nobody takes. So playback is stopped first, and frames are taken unseen until the
/// output is gone.
void MPVOpenGLView::stopOutput() {
    const char *stop[] = {"stop", nullptr};
    // Not waited for: the player may itself be waiting for a frame of its output to be taken.
    m_functions.commandAsync(m_player, 0, stop);
    const QDeadlineTimer enough(longestEnd);
    for (readEvents(); m_hasFile && !enough.hasExpired(); readEvents()) {
        if (frameWaits()) {
            dropFrame();
        } else {
            std::this_thread::sleep_for(microseconds(100));
        }
    }
}

/// A player puts its output away before it tells that it is idle.
void MPVOpenGLView::readEvents() {
    for (const mpv_event *event = m_functions.waitEvent(m_player, 0); event->event_id != MPV_EVENT_NONE;
         event = m_functions.waitEvent(m_player, 0)) {
        if (event->event_id == MPV_EVENT_START_FILE) {
            m_hasFile = true;
        } else if (event->event_id == MPV_EVENT_IDLE) {
            m_hasFile = false;
        }
    }
}

bool MPVOpenGLView::frameWaits() const {
    return (m_functions.renderContextUpdate(m_renderContext) & MPV_RENDER_UPDATE_FRAME) != 0;
}

void MPVOpenGLView::dropFrame() {
    int skip = 1;
    int block = 0;
    mpv_render_param parameters[] = {
        {MPV_RENDER_PARAM_SKIP_RENDERING, &skip},
        {MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME, &block},
        {MPV_RENDER_PARAM_INVALID, nullptr},
    };
    m_functions.renderContextRender(m_renderContext, parameters);
    m_functions.renderContextReportSwap(m_renderContext);
}
