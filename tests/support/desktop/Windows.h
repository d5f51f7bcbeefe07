// Queries the windows of real programs.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <string>

#include "tests/support/ChildProcess.h"

namespace seldial::tests {

/// The windows of one display. Every wait throws std::runtime_error after kTimeLimit.
class Windows {
 public:
  explicit Windows(const std::string& display);
  ~Windows();
  Windows(const Windows&) = delete;
  Windows& operator=(const Windows&) = delete;

  /// Waits until a window manager runs and manages new windows.
  void waitForManager() const;

  /// Waits until a window with that WM_CLASS name, or one inside it, has the focus.
  [[nodiscard]] xcb_window_t waitForFocus(const std::string& name) const;

  /// Waits until the window manager has noticed that the window is the active one. Until then it
  /// may move the focus back for a moment.
  void waitUntilActive(xcb_window_t window) const;

  /// Waits until the selection ("PRIMARY") has an owner.
  void waitForOwner(const std::string& selection) const;

  /// Clicks `times` times in quick succession with the first button, at a position in a window.
  void click(xcb_window_t window, std::int16_t x, std::int16_t y, int times) const;

 private:
  void waitUntilItManagesWindows() const;
  [[nodiscard]] bool hasProperty(xcb_window_t window, xcb_atom_t property) const;
  [[nodiscard]] xcb_window_t focusedWindow() const;
  [[nodiscard]] bool hasName(xcb_window_t window, const std::string& name) const;
  [[nodiscard]] xcb_window_t parentOf(xcb_window_t window) const;

  xcb_connection_t* connection_;
};

/// Runs a window manager for the lifetime of the object.
class WindowManager {
 public:
  explicit WindowManager(const std::string& display);

 private:
  ChildProcess process_;
};

}  // namespace seldial::tests
