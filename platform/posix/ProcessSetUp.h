// What a background program asks of its process before anything else happens in it, on every
// system alike.
#pragma once

#include <csignal>

namespace seldial::platform::posix_port {

/// SIGTERM, SIGINT and SIGHUP: each asks for an orderly end. Without SIGHUP where whoever started
/// the process made it ignored, so that the process outlives its terminal.
sigset_t terminationSignals();

/// Main thread, before any other thread is started:
/// - opens /dev/null as descriptors 0, 1 and 2 where one is closed, so that no line of output is
///   ever written into a socket that took the number;
/// - puts standard output in line-buffered mode, so that a reader behind a pipe sees each line;
/// - ignores SIGPIPE;
/// - raises the soft limit of open descriptors as far as the system lets it: a waiting client costs
///   one each;
/// - makes every file reachable by its owner alone from its first instant (the sockets).
/// A step that the system refuses is left out.
void setUpProcess();

}  // namespace seldial::platform::posix_port
