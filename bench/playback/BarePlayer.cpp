#include "BarePlayer.h"

#include <QElapsedTimer>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QSemaphore>

#include <mpv/client.h>
#include <mpv/render_gl.h>

namespace {

constexpr int patience = 5000;

void *procAddress(void *, const char *name) {
    return reinterpret_cast<void *>(QOpenGLContext::currentContext()->getProcAddress(name));
}

/// Waits for notices until a frame is there, and draws it.
bool drawFirstFrame(mpv_render_context *context, QSemaphore &notices, QOpenGLFramebufferObject &target) {
    while (notices.tryAcquire(1, patience)) {
        if ((mpv_render_context_update(context) & MPV_RENDER_UPDATE_FRAME) == 0) {
            continue;
        }
        mpv_opengl_fbo fbo{int(target.handle()), target.width(), target.height(), 0};
        int flip = 1;
        mpv_render_param parameters[] = {{MPV_RENDER_PARAM_OPENGL_FBO, &fbo},
                                         {MPV_RENDER_PARAM_FLIP_Y, &flip},
                                         {MPV_RENDER_PARAM_INVALID, nullptr}};
        return mpv_render_context_render(context, parameters) >= 0;
    }
    return false;
}

} // namespace

double BarePlayer::firstFrame(const QByteArray &file) {
    QElapsedTimer clock;
    clock.start();
    QSurfaceFormat format;
    format.setVersion(3, 2);
    format.setProfile(QSurfaceFormat::CoreProfile);
    QOffscreenSurface surface;
    surface.setFormat(format);
    surface.create();
    QOpenGLContext gl;
    gl.setFormat(format);
    if (!gl.create() || !gl.makeCurrent(&surface)) {
        return -1;
    }
    QOpenGLFramebufferObject target(640, 360);
    mpv_handle *player = mpv_create();
    mpv_set_option_string(player, "vo", "libmpv");
    mpv_set_option_string(player, "hwdec", "no");
    mpv_set_option_string(player, "ao", "pipewire,pulse,alsa");
    mpv_set_option_string(player, "mute", "yes");
    mpv_initialize(player);
    mpv_opengl_init_params init{};
    init.get_proc_address = procAddress;
    mpv_render_param parameters[] = {
        {MPV_RENDER_PARAM_API_TYPE, const_cast<char *>(MPV_RENDER_API_TYPE_OPENGL)},
        {MPV_RENDER_PARAM_OPENGL_INIT_PARAMS, &init},
        {MPV_RENDER_PARAM_INVALID, nullptr}};
    mpv_render_context *context = nullptr;
    QSemaphore notices;
    double result = -1;
    if (mpv_render_context_create(&context, player, parameters) >= 0) {
        mpv_render_context_set_update_callback(
            context, [](void *semaphore) { static_cast<QSemaphore *>(semaphore)->release(); }, &notices);
        const char *load[] = {"loadfile", file.constData(), nullptr};
        mpv_command(player, load);
        if (drawFirstFrame(context, notices, target)) {
            result = double(clock.nsecsElapsed()) / 1e6;
        }
        mpv_render_context_free(context);
    }
    mpv_terminate_destroy(player);
    return result;
}
