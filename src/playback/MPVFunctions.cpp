#include "MPVFunctions.h"

#include <QLibrary>

#include <mpv/client.h>
#include <mpv/render.h>

#include <thread>

#include <sys/resource.h>

namespace {

const MPVFunctions *replacement = nullptr;

/// Steps of the scheduler's niceness, each about a tenth of the processor.
constexpr int politeness = 5;

decltype(&mpv_create) create = nullptr;

/// The player's threads, which decode, go after the one that answers the user: they have the priority of the
/// thread that makes the player. That one cannot be this one, which would not get its own priority back.
mpv_handle *createPolite() {
    mpv_handle *made = nullptr;
    std::thread([&made] {
        ::setpriority(PRIO_PROCESS, 0, politeness);
        made = create();
    }).join();
    return made;
}

/// Declared is the function's type in the library's header, which that of the table's entry has to be.
template <typename Declared>
void resolve(QLibrary &library, Declared *&entry, const char *name) {
    entry = reinterpret_cast<Declared *>(library.resolve(name));
}

MPVFunctions loaded() {
    QLibrary library(QStringLiteral("mpv"), MPV_CLIENT_API_VERSION >> 16);
    MPVFunctions table{};
    resolve<decltype(mpv_create)>(library, create, "mpv_create");
    resolve<decltype(mpv_set_option_string)>(library, table.setOptionString, "mpv_set_option_string");
    resolve<decltype(mpv_initialize)>(library, table.initialize, "mpv_initialize");
    resolve<decltype(mpv_set_property_string)>(library, table.setPropertyString, "mpv_set_property_string");
    resolve<decltype(mpv_get_property_string)>(library, table.getPropertyString, "mpv_get_property_string");
    resolve<decltype(mpv_free)>(library, table.free, "mpv_free");
    resolve<decltype(mpv_command)>(library, table.command, "mpv_command");
    resolve<decltype(mpv_command_async)>(library, table.commandAsync, "mpv_command_async");
    resolve<decltype(mpv_wait_event)>(library, table.waitEvent, "mpv_wait_event");
    resolve<decltype(mpv_terminate_destroy)>(library, table.terminateDestroy, "mpv_terminate_destroy");
    resolve<decltype(mpv_get_time_us)>(library, table.getTimeUs, "mpv_get_time_us");
    resolve<decltype(mpv_render_context_create)>(library, table.renderContextCreate,
                                                 "mpv_render_context_create");
    resolve<decltype(mpv_render_context_set_update_callback)>(library, table.renderContextSetUpdateCallback,
                                                              "mpv_render_context_set_update_callback");
    resolve<decltype(mpv_render_context_update)>(library, table.renderContextUpdate,
                                                 "mpv_render_context_update");
    resolve<decltype(mpv_render_context_get_info)>(library, table.renderContextGetInfo,
                                                   "mpv_render_context_get_info");
    resolve<decltype(mpv_render_context_render)>(library, table.renderContextRender,
                                                 "mpv_render_context_render");
    resolve<decltype(mpv_render_context_report_swap)>(library, table.renderContextReportSwap,
                                                      "mpv_render_context_report_swap");
    resolve<decltype(mpv_render_context_free)>(library, table.renderContextFree, "mpv_render_context_free");
    table.create = createPolite;
    if (!library.isLoaded()) {
        qWarning("Videos cannot be played: %s", qPrintable(library.errorString()));
        table.create = []() -> mpv_handle * { return nullptr; };
    }
    return table;
}

} // namespace

const MPVFunctions &MPVFunctions::real() {
    static const MPVFunctions functions = loaded();
    return functions;
}

const MPVFunctions &MPVFunctions::standard() {
    return replacement ? *replacement : real();
}

void MPVFunctions::setStandard(const MPVFunctions *functions) {
    replacement = functions;
}
