// Which program has the focus, where the compositor lists its windows.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/wayland/Display.h"

namespace seldial::platform::wayland {

/// Names of the program that owns the focused window: the application id, or the window class on
/// Xwayland. None when no window has the focus.
using FocusedProgram = std::function<std::vector<std::string>()>;

/// The application ids of the active windows; none when the compositor does not tell. Takes two
/// round trips. The list is requested for each call, so that changes wake nobody up in between.
[[nodiscard]] std::vector<std::string> activeApplications(Display& display);

/// Which program has the focus under KWin.
///
/// Notes only that windows appear; what they are is requested when it is needed, so that nothing
/// else wakes the program up. Main thread only.
class PlasmaWindows {
 public:
  /// The display must outlive this object. Where it offers no list of windows to this program, none
  /// is active.
  explicit PlasmaWindows(Display& display);
  PlasmaWindows(const PlasmaWindows&) = delete;
  PlasmaWindows& operator=(const PlasmaWindows&) = delete;

  /// The application id, or the window class on Xwayland, of the active window. Takes two round
  /// trips.
  [[nodiscard]] std::vector<std::string> activeApplications();

  // Called by libwayland.
  void appeared(std::uint32_t id) { ids_.push_back(id); }

 private:
  Display& display_;
  std::vector<std::uint32_t> ids_;  ///< of all windows, and of those gone since the last request
};

}  // namespace seldial::platform::wayland
