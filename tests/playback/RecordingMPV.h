#pragma once

#include "MPVFunctions.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

#include <mpv/client.h>

/// Stands in for the player library: writes down every call, in order, and answers what the test prepared.
/// One at a time.
class RecordingMPV {
public:
    RecordingMPV();
    ~RecordingMPV();
    RecordingMPV(const RecordingMPV &) = delete;
    RecordingMPV &operator=(const RecordingMPV &) = delete;

    const MPVFunctions &functions() const;
    /// The calls since the last take, one text each: the entry point's name and its texts.
    QStringList take() { return std::exchange(calls, {}); }
    /// What mpv's threads do when a frame is to be drawn.
    void notify() const;

    QStringList calls;
    /// The entry point that fails, if any: "create", "initialize" or "render_context_create".
    QString failing;
    bool framePending = false;
    /// Microseconds from now until the pending frame is due.
    int64_t frameDueIn = 0;
    /// What the player tells, in order; MPV_EVENT_NONE: nothing more for now.
    QList<mpv_event_id> events;
    mpv_event event{};
    QHash<QByteArray, QByteArray> properties;

    void (*callback)(void *) = nullptr;
    void *callbackContext = nullptr;
};
