#pragma once

#include <functional>

namespace seldial::platform::macos {

/// Sets the process up as posix_port::setUpProcess() says. Main thread, first of all.
void setUpProcess();

/// Takes each of the posix_port::terminationSignals() as an event: `received` is called on the main
/// thread, once the main queue is served, each time one arrives. Main thread, once.
void onTerminationSignals(std::function<void()> received);

}  // namespace seldial::platform::macos
