// What a background program asks of its process before anything else happens in it.
#pragma once

namespace seldial::platform::linux_port {

/// Main thread, before any other thread is started (they inherit the signal mask):
/// - all that posix_port::setUpProcess() does;
/// - blocks the posix_port::terminationSignals(), which the main loop reads.
void setUpProcess();

}  // namespace seldial::platform::linux_port
