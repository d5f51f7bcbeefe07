// The user's keyboard: the keys of a physical keyboard of the server, not of the XTEST keyboard on
// which programs type. So "the user still holds Control" is real server state.
#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace seldial::tests {

/// Every call returns once the server has acted on it.
class Keyboard {
 public:
  explicit Keyboard(const std::string& display);
  ~Keyboard();
  Keyboard(const Keyboard&) = delete;
  Keyboard& operator=(const Keyboard&) = delete;

  void press(std::uint8_t key);
  void release(std::uint8_t key);
  void tap(std::uint8_t key);
  void hold(std::uint8_t key, std::chrono::milliseconds duration);
  void press(const std::vector<std::uint8_t>& keys);
  /// Releases the keys in the given order.
  void release(const std::vector<std::uint8_t>& keys);

  /// The keys that are down, as the server sees them: on all keyboards, on the physical keyboard
  /// only, and on the XTEST keyboard only.
  [[nodiscard]] std::set<std::uint8_t> down() const { return downOn(master_); }
  [[nodiscard]] std::set<std::uint8_t> physicallyDown() const { return downOn(physical_); }
  [[nodiscard]] std::set<std::uint8_t> typedDown() const { return downOn(typing_); }

  /// Waits until exactly these keys are down on the XTEST keyboard; throws std::runtime_error after
  /// kTimeLimit.
  void waitForTypedDown(const std::set<std::uint8_t>& keys) const;

  /// The modifiers that applications see now, as kState bits.
  [[nodiscard]] unsigned modifiers() const;

  void movePointer(std::int16_t x, std::int16_t y);
  void holdMouseButton(bool held);
  /// Clicks at a position on the screen; `button` is the physical button.
  void click(std::int16_t x, std::int16_t y, std::uint8_t button = 1);
  /// Swaps the first and the third mouse button.
  void swapMouseButtons();

  /// Gives no window the focus: keys go to the window under the pointer.
  void focusFollowsPointer();

  /// Removes the physical keyboard from the desktop while its keys are down, or restores it.
  void unplug();
  void plugIn();

  /// Remaps a key, like xmodmap; 0 removes its symbol.
  void remap(std::uint8_t key, xcb_keysym_t symbol);

  /// Adds a second pointer and a second keyboard that applications see: "NAME pointer" and "NAME
  /// keyboard".
  void addMaster(const std::string& name);

  /// The device numbers of the keyboards, for setxkbmap and xkbcomp.
  [[nodiscard]] std::string physicalDevice() const { return std::to_string(physical_); }
  [[nodiscard]] std::string typingDevice() const { return std::to_string(typing_); }

  /// The index of the current layout, from 0.
  [[nodiscard]] unsigned group() const;

  /// Types through the XTEST keyboard, as another program would.
  void typeThroughXTest(std::uint8_t key, bool down);

 private:
  [[nodiscard]] std::set<std::uint8_t> downOn(std::uint8_t device) const;
  void findDevices();
  [[nodiscard]] unsigned state() const;
  void fake(std::uint8_t type, std::uint8_t key, std::uint8_t device);
  void synchronise();

  xcb_connection_t* connection_;
  xcb_window_t root_ = 0;
  std::uint8_t firstInputEvent_ = 0;
  std::uint8_t master_ = 0;
  std::uint8_t typing_ = 0;
  std::uint8_t physical_ = 0;
};

}  // namespace seldial::tests
