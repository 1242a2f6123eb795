#pragma once

#include <chrono>

/// The desktop's and the system's message bus, before anything connects to them.
namespace MessageBuses {

/// Connecting to a bus whose daemon is stuck holds up the caller for half a minute, and the toolkit connects
/// on the main thread. Knocks at both first, and when one does not open in time tells this process and its
/// children that there is none. Called first of all in main(); takes well below a millisecond where the buses
/// are healthy.
void avoidStuckOnes(std::chrono::milliseconds limit);

} // namespace MessageBuses
