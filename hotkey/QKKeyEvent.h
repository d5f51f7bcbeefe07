#pragma once

#include <cstdint>
#include <string>

namespace seldial {

/// The event that a used hot key is invoked with: a key event made up for it, since the desktop
/// reports a hot key and not a key.
struct QKKeyEvent {
  static constexpr std::uint32_t kKeyUp = 11;    ///< the type of a key going up
  static constexpr std::int32_t kNoWindow = -1;  ///< outside of every window

  std::uint32_t type = kKeyUp;              ///< always kKeyUp
  double locationX = 0;                     ///< pointer position, pixels
  double locationY = 0;                     ///< the same, vertically
  std::uint64_t modifierFlags = 0;          ///< platform::ModifierFlag values still held
  double timestamp = 0;                     ///< seconds, the desktop's own clock
  std::int32_t windowNumber = kNoWindow;    ///< always kNoWindow
  std::string characters;                   ///< always empty
  std::string charactersIgnoringModifiers;  ///< always empty
  bool isARepeat = false;                   ///< always false
  std::uint16_t keyCode = 0;                ///< virtual key code of the hot key
};

}  // namespace seldial
