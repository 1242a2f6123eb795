#include "MPVFunctions.h"

#include <mpv/client.h>
#include <mpv/render.h>

#include <thread>

#include <sys/resource.h>

namespace {

const MPVFunctions *replacement = nullptr;

/// Steps of the scheduler's niceness, each about a tenth of the processor.
constexpr int politeness = 5;

/// The player's threads, which decode, go after the one that answers the user: they have the priority of the
/// thread that makes the player. That one cannot be this one, which would not get its own priority back.
mpv_handle *createPolite() {
    mpv_handle *made = nullptr;
    std::thread([&made] {
        ::setpriority(PRIO_PROCESS, 0, politeness);
        made = mpv_create();
    }).join();
    return made;
}

} // namespace

const MPVFunctions &MPVFunctions::real() {
    static const MPVFunctions functions{
        .create = createPolite,
        .setOptionString = mpv_set_option_string,
        .initialize = mpv_initialize,
        .setPropertyString = mpv_set_property_string,
        .getPropertyString = mpv_get_property_string,
        .free = mpv_free,
        .command = mpv_command,
        .commandAsync = mpv_command_async,
        .waitEvent = mpv_wait_event,
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
