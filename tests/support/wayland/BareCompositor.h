// A compositor that offers nothing, no more than a seat without devices, or what a test adds.
#pragma once

#include <wayland-server.h>

#include <functional>
#include <string>
#include <thread>

namespace seldial::tests {

class BareCompositor {
 public:
  enum class Offer { kNothing, kSeat };

  /// It answers at this path once it is constructed. `addGlobals` is called before that.
  explicit BareCompositor(const std::string& socketPath, Offer offer = Offer::kNothing,
                          const std::function<void(wl_display*)>& addGlobals = {});
  ~BareCompositor();
  BareCompositor(const BareCompositor&) = delete;
  BareCompositor& operator=(const BareCompositor&) = delete;

  /// Runs `task` on the thread that serves the clients, and sends its events; returns once that is
  /// done. One thread at a time.
  void run(std::function<void()> task);

 private:
  wl_display* display_ = wl_display_create();
  int wake_;  ///< an eventfd: there is a task
  int done_;  ///< an eventfd: it is done
  std::function<void()> task_;
  wl_event_source* woken_;
  std::thread thread_;
};

}  // namespace seldial::tests
