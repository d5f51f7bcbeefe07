// Process set-up that Linux and macOS share.
#pragma once

#include <chrono>
#include <csignal>

namespace seldial::platform::posix_port {

/// SIGTERM, SIGINT and SIGHUP, which end the program. SIGHUP is left out if it was ignored when the
/// process started, as nohup(1) does, so that the process outlives its terminal.
sigset_t terminationSignals();

/// Time from the first of these signals until the main thread's waits are interrupted. A dial with
/// the default delay takes less.
inline constexpr std::chrono::milliseconds kTerminationTimeout{1000};

/// Time from the interruption to the end of the process: enough to release the keys that are held
/// down. After a second signal the process waits only if it holds keys down.
inline constexpr std::chrono::milliseconds kTerminationGrace{500};

/// Main thread, before any other thread is started:
/// - opens /dev/null for each of the descriptors 0, 1 and 2 that is closed, so that output is never
///   written to a socket that got the number;
/// - makes standard output line-buffered, so that a reader of a pipe sees each line at once;
/// - ignores SIGPIPE;
/// - raises the soft limit on open descriptors as far as possible: each connected client needs one;
/// - sets the umask so that new files, the socket among them, are accessible to their owner only.
/// A step that fails is skipped.
void setUpProcess();

}  // namespace seldial::platform::posix_port
