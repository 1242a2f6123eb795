#pragma once

#include <mutex>

class QQuickWindow;

/// Lets windows and videos draw one after the other where software draws in place of a graphics processor.
///
/// Mesa's drawing software looks through what all contexts of the process are drawing whenever one of them
/// gets new pixels, and guards none of it against the threads of the others: a window drawn in a thread of
/// its own while a video is drawn in the main thread ends in a crash, now and then.
namespace DrawingTurns {

/// Held by whoever draws.
std::timed_mutex &turn();
/// From now on the window takes the turn for each of its frames, in whichever thread it is drawn. Main
/// thread, before the window is shown.
void join(QQuickWindow &window);

} // namespace DrawingTurns
