// The user's keyboard on a compositor, and its keymap.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <memory>
#include <vector>

#include "platform/wayland/SeatKeymap.h"
#include "tests/support/wayland/WaylandClient.h"

struct zwp_virtual_keyboard_v1;

namespace seldial::tests {

/// The keymap of these layouts, such as "us,ru".
std::shared_ptr<xkb_keymap> keymapOf(const char* layouts);

/// The file in which a compositor passes the keymap.
platform::wayland::KeymapFile fileOf(xkb_keymap& keymap);

/// Keys are evdev codes. Each operation returns once the compositor has handled it. Create it
/// before the windows: programs expect a seat to have a keyboard.
class UserKeyboard final : public WaylandClient {
 public:
  explicit UserKeyboard(const std::string& socketPath, const char* layout = "us");
  ~UserKeyboard();
  UserKeyboard(const UserKeyboard&) = delete;
  UserKeyboard& operator=(const UserKeyboard&) = delete;

  void press(const std::vector<unsigned>& keys);
  void release(const std::vector<unsigned>& keys);  ///< the last one first
  void tap(unsigned key);
  /// Presses `modifiers`, taps the key and releases them.
  void use(const std::vector<unsigned>& modifiers, unsigned key);

 private:
  void set(unsigned key, bool down);

  zwp_virtual_keyboard_v1* keyboard_;
  std::shared_ptr<xkb_state> state_;
};

}  // namespace seldial::tests
