#pragma once

#include <cstdint>
#include <string>

namespace seldial {

/// The event that a used hot key is invoked with: a key event made up for it, since the desktop
/// reports a hot key and not a key.
struct QKKeyEvent {
  static constexpr std::uint32_t kKeyUp = 11;
  static constexpr std::int32_t kNoWindow = -1;

  std::uint32_t type = kKeyUp;
  double locationX = 0;  ///< pointer position, pixels
  double locationY = 0;
  std::uint64_t modifierFlags = 0;  ///< platform::ModifierFlag values
  double timestamp = 0;             ///< seconds, the desktop's own clock
  std::int32_t windowNumber = kNoWindow;
  std::string characters;
  std::string charactersIgnoringModifiers;
  bool isARepeat = false;
  std::uint16_t keyCode = 0;  ///< virtual key code
};

}  // namespace seldial
