#pragma once

#include "FileOperations.h"

#include <functional>
#include <memory>

/// Carries the progress of one batch to the thread that made the object, as often as a screen can show it: a
/// batch of thousands of small files would otherwise keep both threads busy with waking each other.
class BatchProgress {
public:
    /// Called with 0…1 from the event loop of the object's thread.
    using Show = std::function<void(double)>;

    explicit BatchProgress(Show show);

    /// May be called from any thread and outlive the object. The first report is shown at once, the latest
    /// one soon.
    FileOperations::Progress reporter() const;
    /// Nothing is shown from now on. On the object's thread.
    void end() const;

private:
    struct Relay;
    std::shared_ptr<Relay> m_relay;
};
