#include "RecordingMPV.h"

#include <mpv/client.h>
#include <mpv/render_gl.h>

#include <cstdlib>
#include <cstring>

namespace {

RecordingMPV *active = nullptr;
constexpr int64_t now = 1'000'000'000;

int handleStorage;
int contextStorage;
mpv_handle *const handle = reinterpret_cast<mpv_handle *>(&handleStorage);
mpv_render_context *const context = reinterpret_cast<mpv_render_context *>(&contextStorage);

void record(const QString &call) {
    active->calls << call;
}

bool fails(const char *entryPoint) {
    return active->failing == QLatin1String(entryPoint);
}

QString text(const char *bytes) {
    return QString::fromUtf8(bytes);
}

QString parameterText(const mpv_render_param &parameter) {
    const auto numbered = [&](const char *name) {
        return QStringLiteral("%1=%2").arg(text(name)).arg(*static_cast<const int *>(parameter.data));
    };
    switch (parameter.type) {
    case MPV_RENDER_PARAM_API_TYPE:
        return QStringLiteral("API_TYPE=") + text(static_cast<const char *>(parameter.data));
    case MPV_RENDER_PARAM_OPENGL_INIT_PARAMS:
        return QStringLiteral("OPENGL_INIT_PARAMS");
    case MPV_RENDER_PARAM_OPENGL_FBO: {
        const auto *fbo = static_cast<const mpv_opengl_fbo *>(parameter.data);
        return QStringLiteral("OPENGL_FBO=%1x%2/%3").arg(fbo->w).arg(fbo->h).arg(fbo->internal_format);
    }
    case MPV_RENDER_PARAM_FLIP_Y:
        return numbered("FLIP_Y");
    case MPV_RENDER_PARAM_SKIP_RENDERING:
        return numbered("SKIP_RENDERING");
    case MPV_RENDER_PARAM_BLOCK_FOR_TARGET_TIME:
        return numbered("BLOCK_FOR_TARGET_TIME");
    default:
        return QStringLiteral("?");
    }
}

QString parametersText(const mpv_render_param *parameters) {
    QString result;
    for (; parameters->type != MPV_RENDER_PARAM_INVALID; ++parameters) {
        result += u' ' + parameterText(*parameters);
    }
    return result;
}

int recordedCommand(mpv_handle *, const char **arguments) {
    QString call = QStringLiteral("command");
    for (; *arguments; ++arguments) {
        call += u' ' + text(*arguments);
    }
    record(call);
    return 0;
}

char *recordedGetProperty(mpv_handle *, const char *name) {
    record(QStringLiteral("get ") + text(name));
    if (!active->properties.contains(name)) {
        return nullptr;
    }
    return strdup(active->properties.value(name).constData());
}

int recordedGetInfo(mpv_render_context *, mpv_render_param parameter) {
    if (parameter.type != MPV_RENDER_PARAM_NEXT_FRAME_INFO) {
        return MPV_ERROR_NOT_IMPLEMENTED;
    }
    auto *info = static_cast<mpv_render_frame_info *>(parameter.data);
    info->flags = active->framePending ? MPV_RENDER_FRAME_INFO_PRESENT : 0;
    info->target_time = now + active->frameDueIn;
    return 0;
}

int recordedRender(mpv_render_context *, mpv_render_param *parameters) {
    record(QStringLiteral("render") + parametersText(parameters));
    active->framePending = false;
    return 0;
}

int recordedRenderContextCreate(mpv_render_context **result, mpv_handle *, mpv_render_param *parameters) {
    record(QStringLiteral("render_context_create") + parametersText(parameters));
    if (fails("render_context_create")) {
        return MPV_ERROR_UNSUPPORTED;
    }
    *result = context;
    return 0;
}

void recordedSetCallback(mpv_render_context *, void (*callback)(void *), void *callbackContext) {
    record(callback ? QStringLiteral("set_update_callback") : QStringLiteral("clear_update_callback"));
    active->callback = callback;
    active->callbackContext = callbackContext;
}

MPVFunctions table() {
    MPVFunctions f{};
    f.create = [] {
        record(QStringLiteral("create"));
        return fails("create") ? nullptr : handle;
    };
    f.setOptionString = [](mpv_handle *, const char *name, const char *value) {
        record(QStringLiteral("option %1=%2").arg(text(name), text(value)));
        return int(MPV_ERROR_OPTION_NOT_FOUND); // statuses are nobody's business
    };
    f.initialize = [](mpv_handle *) {
        record(QStringLiteral("initialize"));
        return fails("initialize") ? int(MPV_ERROR_GENERIC) : 0;
    };
    f.setPropertyString = [](mpv_handle *, const char *name, const char *value) {
        record(QStringLiteral("set %1=%2").arg(text(name), text(value)));
        return int(MPV_ERROR_PROPERTY_UNAVAILABLE);
    };
    f.getPropertyString = recordedGetProperty;
    f.free = std::free;
    f.command = recordedCommand;
    f.commandAsync = [](mpv_handle *, uint64_t, const char **arguments) {
        record(QStringLiteral("command_async ") + text(*arguments));
        return 0;
    };
    f.waitEvent = [](mpv_handle *, double) {
        active->event.event_id = active->events.isEmpty() ? MPV_EVENT_NONE : active->events.takeFirst();
        return &active->event;
    };
    f.terminateDestroy = [](mpv_handle *) { record(QStringLiteral("terminate_destroy")); };
    f.getTimeUs = [](mpv_handle *) { return now; };
    f.renderContextCreate = recordedRenderContextCreate;
    f.renderContextSetUpdateCallback = recordedSetCallback;
    f.renderContextUpdate = [](mpv_render_context *) {
        return uint64_t(active->framePending ? MPV_RENDER_UPDATE_FRAME : 0);
    };
    f.renderContextGetInfo = recordedGetInfo;
    f.renderContextRender = recordedRender;
    f.renderContextReportSwap = [](mpv_render_context *) { record(QStringLiteral("report_swap")); };
    f.renderContextFree = [](mpv_render_context *) { record(QStringLiteral("render_context_free")); };
    return f;
}

} // namespace

RecordingMPV::RecordingMPV() {
    active = this;
}

RecordingMPV::~RecordingMPV() {
    active = nullptr;
}

const MPVFunctions &RecordingMPV::functions() const {
    static const MPVFunctions functions = table();
    return functions;
}

void RecordingMPV::notify() const {
    callback(callbackContext);
}
