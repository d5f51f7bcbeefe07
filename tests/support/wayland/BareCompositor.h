// A compositor that offers nothing, or no more than a seat without devices.
#pragma once

#include <wayland-server.h>

#include <string>
#include <thread>

namespace seldial::tests {

class BareCompositor {
 public:
  enum class Offer { kNothing, kSeat };

  /// It answers at this path once it is constructed.
  explicit BareCompositor(const std::string& socketPath, Offer offer = Offer::kNothing);
  ~BareCompositor();
  BareCompositor(const BareCompositor&) = delete;
  BareCompositor& operator=(const BareCompositor&) = delete;

 private:
  wl_display* display_ = wl_display_create();
  int stop_;  ///< an eventfd
  wl_event_source* stopped_;
  std::thread thread_;
};

}  // namespace seldial::tests
