// A compositor with KWin's list of windows for taskbars.
#pragma once

#include <map>
#include <string>

#include "tests/support/wayland/BareCompositor.h"

namespace seldial::tests {

/// Serves one client.
class PlasmaWindowList {
 public:
  /// KWin 5 describes a window once. KWin 6 describes it a second time, without its state, and says
  /// that it is gone.
  enum class Version { kFive, kSix };

  PlasmaWindowList(const std::string& socketPath, Version version);

  /// `process`: 0 for none.
  void open(std::uint32_t id, const std::string& applicationId, std::uint32_t process = 0);
  void close(std::uint32_t id);
  /// The user goes to a window; to none with 0.
  void activate(std::uint32_t id);

  // Called by libwayland.
  void bind(wl_client* client, std::uint32_t id);
  void describe(wl_resource* window, std::uint32_t id);

 private:
  const Version version_;
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
