#include "MPVFunctions.h"

#include <mpv/client.h>
#include <mpv/render.h>

namespace {

const MPVFunctions *replacement = nullptr;

} // namespace

const MPVFunctions &MPVFunctions::real() {
    static const MPVFunctions functions{
        .create = mpv_create,
        .setOptionString = mpv_set_option_string,
        .initialize = mpv_initialize,
        .setPropertyString = mpv_set_property_string,
        .getPropertyString = mpv_get_property_string,
        .free = mpv_free,
        .command = mpv_command,
        .commandAsync = mpv_command_async,
        .terminateDestroy = mpv_terminate_destroy,
        .getTimeUs = mpv_get_time_us,
        .renderContextCreate = mpv_render_context_create,
        .renderContextSetUpdateCallback = mpv_render_context_set_update_callback,
        .renderContextUpdate = mpv_render_context_update,
        .renderContextGetInfo = mpv_render_context_get_info,
        .renderContextRender = mpv_render_context_render,
        .renderContextReportSwap = mpv_render_context_report_swap,
        .renderContextFree = mpv_render_context_free,
    };
    return functions;
}

const MPVFunctions &MPVFunctions::standard() {
    return replacement ? *replacement : real();
}

void MPVFunctions::setStandard(const MPVFunctions *functions) {
    replacement = functions;
}
