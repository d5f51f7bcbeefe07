// Plasma's service for global shortcuts, org.kde.kglobalaccel, as one of its components.
//
// A component has actions, and an action has keys. If a program ends without removing them, the
// service keeps both, even beyond the end of the session. Its keys are Qt's codes for the symbols
// that the user's layout assigns to a key, with modifier bits.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "platform/wayland/Bus.h"

namespace seldial::platform::wayland {

/// The component of this program. Main thread only.
class GlobalAccel {
 public:
  static constexpr const char* kService = "org.kde.kglobalaccel";

  /// Called from the loop, even while it blocks, when a key of an action is pressed or released.
  using Handler = std::function<void(const std::string& action)>;

  /// The bus must outlive this object.
  explicit GlobalAccel(Bus& bus) : bus_(bus) {}

  /// Sets the handlers. False if the service does not answer.
  bool listen(Handler pressed, Handler released);

  /// Creates the action, or replaces its keys, which are Qt codes. If another action holds one of
  /// the keys, removes the action and returns false. `title` is its name for the user.
  bool set(const std::string& action, const std::string& title, const std::vector<int>& keys);
  void remove(const std::string& action);

  /// The major version of Qt that the service uses, which changed the codes of some keys.
  [[nodiscard]] int qtVersion();

  /// All existing actions of the component, including those of other Seldial processes.
  [[nodiscard]] std::vector<std::string> actions();

 private:
  Bus& bus_;
  BusSlot pressed_;
  BusSlot released_;
  int qtVersion_ = 0;  ///< 0: not requested yet
};

/// The codes that KWin uses for a key, an X key code, with modifiers (HotKeyModifier bits), in all
/// layouts of the keymap, without duplicates. Empty if there is none. `qtVersion` is the major
/// version of Qt that KWin uses.
[[nodiscard]] std::vector<int> qtKeys(xkb_keymap& keymap, xkb_keycode_t key,
                                      std::uint32_t modifiers, int qtVersion);

}  // namespace seldial::platform::wayland
