#pragma once

#include <cstdint>

struct mpv_event;
struct mpv_handle;
struct mpv_render_context;
struct mpv_render_param;

/// Every entry point of the player library that Mosa uses, so that a test can record the calls in its place.
///
/// A table is never changed while a player made with it exists; players keep a reference to it.
struct MPVFunctions {
    mpv_handle *(*create)();
    int (*setOptionString)(mpv_handle *, const char *name, const char *value);
    int (*initialize)(mpv_handle *);
    int (*setPropertyString)(mpv_handle *, const char *name, const char *value);
    /// Text to be released with free, or null when the property has no value now.
    char *(*getPropertyString)(mpv_handle *, const char *name);
    void (*free)(void *);
    int (*command)(mpv_handle *, const char **arguments);
    /// Returns at once; the reply is not read.
    int (*commandAsync)(mpv_handle *, uint64_t reply, const char **arguments);
    /// The next of the player's events, within timeout seconds.
    mpv_event *(*waitEvent)(mpv_handle *, double timeout);
    void (*terminateDestroy)(mpv_handle *);
    /// The clock that frames are due on, in microseconds.
    int64_t (*getTimeUs)(mpv_handle *);

    int (*renderContextCreate)(mpv_render_context **, mpv_handle *, mpv_render_param *);
    void (*renderContextSetUpdateCallback)(mpv_render_context *, void (*callback)(void *), void *);
    uint64_t (*renderContextUpdate)(mpv_render_context *);
    int (*renderContextGetInfo)(mpv_render_context *, mpv_render_param);
    int (*renderContextRender)(mpv_render_context *, mpv_render_param *);
    void (*renderContextReportSwap)(mpv_render_context *);
    void (*renderContextFree)(mpv_render_context *);

    /// The library itself, loaded by the first call, which takes longer than all else at the program's start
    /// for everything that it links in turn. Any thread. Where it is missing, create() makes no player.
    static const MPVFunctions &real();
    /// What new players take when they are not given a table: real(), unless a test put another in its place.
    static const MPVFunctions &standard();
    /// Null goes back to real(). Main thread.
    static void setStandard(const MPVFunctions *functions);
};
