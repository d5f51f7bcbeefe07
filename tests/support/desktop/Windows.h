// What a test wants to know of the windows of real programs.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <string>

#include "tests/support/ChildProcess.h"

namespace seldial::tests {

/// Looks at the windows of one display. Every wait throws std::runtime_error after kTimeLimit.
class Windows {
 public:
  explicit Windows(const std::string& display);
  ~Windows();
  Windows(const Windows&) = delete;
  Windows& operator=(const Windows&) = delete;

  /// Waits until a window manager is at work, and sees to new windows.
  void waitForManager() const;

  /// Waits until a window with that WM_CLASS name, or one inside it, has the focus.
  [[nodiscard]] xcb_window_t waitForFocus(const std::string& name) const;

  /// Waits until somebody owns the selection ("PRIMARY").
  void waitForOwner(const std::string& selection) const;

  /// Clicks with the first button at a place in a window, so many times in quick succession.
  void click(xcb_window_t window, std::int16_t x, std::int16_t y, int times) const;

 private:
  void waitForCare() const;
  [[nodiscard]] bool hasProperty(xcb_window_t window, xcb_atom_t property) const;
  [[nodiscard]] xcb_window_t focusedWindow() const;
  [[nodiscard]] bool hasName(xcb_window_t window, const std::string& name) const;
  [[nodiscard]] xcb_window_t parentOf(xcb_window_t window) const;

  xcb_connection_t* connection_;
};

/// A window manager for as long as it lives.
class WindowManager {
 public:
  explicit WindowManager(const std::string& display);

 private:
  ChildProcess process_;
};

}  // namespace seldial::tests
