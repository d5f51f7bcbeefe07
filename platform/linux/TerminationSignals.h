// Ends the application when a signal asks for it, in every state of the main thread.
//
// The main thread may be in a call that nothing ends: libxcb waits for as long as the X server
// takes, and a frozen server never answers. So a thread of its own waits for the signals.
#pragma once

#include <memory>

#include "platform/Application.h"
#include "platform/linux/MainLoop.h"

namespace seldial::platform::linux_port {

/// Watches posix_port::terminationSignals(), which setUpProcess() has blocked.
///
/// - The first signal ends the main loop after the tasks that were posted before it.
/// - A second later, or with a second signal, what the main thread waits for is interrupted: see
///   MainLoop::interrupt() and ApplicationDelegate::applicationMustEnd().
/// - Half a second after that (a fifth after a second signal), or with a third signal, the process
///   ends with status 0, whatever the main thread is doing.
class TerminationSignals {
 public:
  /// Does not keep `loop` alive. Throws std::system_error when the system has no descriptor left.
  TerminationSignals(const std::shared_ptr<MainLoop>& loop, ApplicationDelegate& delegate);
  /// Stops watching; does not wait for the thread.
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

  /// Call this before the delegate is destroyed. Waits for a call of applicationMustEnd().
  void forgetDelegate();

 private:
  class Watch;

  const std::shared_ptr<Watch> watch_;  ///< shared with the thread
};

}  // namespace seldial::platform::linux_port
