// A compositor with KWin's list of windows for taskbars.
#pragma once

#include <map>
#include <string>

#include "tests/support/wayland/BareCompositor.h"

namespace seldial::tests {

/// Serves one client. A client that requests a window by its number is disconnected: KWin 6 makes
/// two objects with one ID for it.
class PlasmaWindowList {
 public:
  explicit PlasmaWindowList(const std::string& socketPath);

  /// `process`: 0 for none.
  void open(std::uint32_t id, const std::string& applicationId, std::uint32_t process = 0);
  void close(std::uint32_t id);
  /// Simulates the user switching to a window; 0 for none.
  void activate(std::uint32_t id);

  // Called by libwayland.
  void bind(wl_client* client, std::uint32_t id);
  void describe(wl_resource* window, const std::string& uuid);

 private:
  struct Window {
    std::string applicationId;
    std::uint32_t process = 0;
  };
  std::map<std::uint32_t, Window> windows_;
  std::uint32_t active_ = 0;
  wl_resource* manager_ = nullptr;
  BareCompositor compositor_;
};

}  // namespace seldial::tests
