#pragma once

#include <functional>

namespace seldial {

/// Takes SIGINT, SIGTERM and, unless it is ignored, SIGHUP as events: blocks them in the calling
/// thread, and so in every thread that is started afterwards, and calls `received` at each one on a
/// thread of its own. Main thread, before any other thread is started.
void onTerminationSignals(std::function<void()> received);

}  // namespace seldial
