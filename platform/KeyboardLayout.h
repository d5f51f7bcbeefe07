#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace seldial::platform {

/// What the keys of the keyboard say in the layout that the user has chosen. Main thread only.
class KeyboardLayout {
 public:
  virtual ~KeyboardLayout() = default;

  /// The characters that the key at that virtual key code makes when it goes down, as UTF-8, in the
  /// layout of this moment; nothing when it makes none (a dead key among them) or there is no
  /// layout. `modifierKeyState` are HotKeyModifier bits as they are; a layout looks for modifiers
  /// eight places lower, so what comes is the key's plain character, on every desktop.
  [[nodiscard]] virtual std::optional<std::string> translate(std::uint16_t keyCode,
                                                             std::uint32_t modifierKeyState) = 0;
};

/// The desktop's own layout, from the port that the program is linked with.
std::shared_ptr<KeyboardLayout> makeSystemKeyboardLayout();

/// The layout of this process: the installed one (see Installed.h), otherwise the system's own,
/// made on first use and never destroyed.
KeyboardLayout& currentKeyboardLayout();

}  // namespace seldial::platform
