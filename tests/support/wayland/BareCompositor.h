// A compositor without globals, with only a seat without devices, or with the globals that a test
// adds.
#pragma once

#include <wayland-server.h>

#include <functional>
#include <string>
#include <thread>

namespace seldial::tests {

class BareCompositor {
 public:
  enum class Offer { kNothing, kSeat };

  /// After construction it answers at this path. `addGlobals` is called before that.
  explicit BareCompositor(const std::string& socketPath, Offer offer = Offer::kNothing,
                          const std::function<void(wl_display*)>& addGlobals = {});
  ~BareCompositor();
  BareCompositor(const BareCompositor&) = delete;
  BareCompositor& operator=(const BareCompositor&) = delete;

  /// Runs `task` on the thread that serves the clients, and sends its events; returns when that is
  /// done. Do not call it on several threads at once.
  void run(std::function<void()> task);

 private:
  wl_display* display_ = wl_display_create();
  int wake_;  ///< an eventfd that signals a task
  int done_;  ///< an eventfd that signals the end of the task
  std::function<void()> task_;
  wl_event_source* woken_;
  std::thread thread_;
};

}  // namespace seldial::tests
