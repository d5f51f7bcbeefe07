#pragma once

#include <functional>

namespace seldial::platform::macos {

/// When the process was started through a symbolic link to its executable, replaces it by the same
/// program under its real path: AppKit looks for the bundle beside the path that was started.
/// `argv` is passed on. Returns when there is no such link, or with a line on standard error when
/// the system refuses. Main thread, before anything else.
void restartUnderRealPath(char* const argv[]);

/// Sets the process up as posix_port::setUpProcess() says. Main thread, first of all.
void setUpProcess();

/// Takes each of the posix_port::terminationSignals() as an event: `received` is called on the main
/// thread, once the main queue is served, each time one arrives. Main thread, once.
void onTerminationSignals(std::function<void()> received);

}  // namespace seldial::platform::macos
