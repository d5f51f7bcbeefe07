// Finds the focused program, if the compositor lists its windows.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/wayland/Display.h"

namespace seldial::platform::wayland {

/// The names of the program that owns the focused window: the application ID, or the window class
/// on Xwayland. Empty if no window has the focus.
using FocusedProgram = std::function<std::vector<std::string>()>;

/// The name of a process, of which the kernel keeps 15 characters; empty if there is none. Any
/// thread.
[[nodiscard]] std::string processName(std::uint32_t process);

/// The application IDs of the active windows; empty if the compositor does not report them. Takes
/// two round trips. The list is requested for each call, so that changes in between do not wake the
/// program up.
[[nodiscard]] std::vector<std::string> activeApplications(Display& display);

/// Finds the focused program under KWin.
///
/// It only records that windows appear. Their details are requested when they are needed, so that
/// nothing wakes the program up but a new order of the windows. Main thread only.
class PlasmaWindows {
 public:
  /// The display must outlive this object. If it offers no list of windows to this program,
  /// activeApplications() is always empty.
  explicit PlasmaWindows(Display& display);
  PlasmaWindows(const PlasmaWindows&) = delete;
  PlasmaWindows& operator=(const PlasmaWindows&) = delete;

  /// The application ID of the active window, or its window class on Xwayland, and the name of its
  /// process: KWin 6 replaces both by the name of a .desktop file ("debian-xterm"). Takes two round
  /// trips.
  [[nodiscard]] std::vector<std::string> activeApplications();

  // Called by libwayland.
  void appeared(const char* uuid) { uuids_.emplace_back(uuid); }

 private:
  Display& display_;
  std::vector<std::string> uuids_;  ///< of all windows, and of those gone since the last request
};

}  // namespace seldial::platform::wayland
