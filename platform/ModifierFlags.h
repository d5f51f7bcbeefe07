#pragma once

#include <cstdint>

namespace seldial::platform {

/// Modifier flags of a keyboard event, device-independent. They are the numbers that the desktop
/// for which the protocol was made gives them.
enum ModifierFlag : std::uint64_t {
  kModifierFlagCapsLock = 0x10000,
  kModifierFlagShift = 0x20000,
  kModifierFlagControl = 0x40000,
  kModifierFlagOption = 0x80000,
  kModifierFlagCommand = 0x100000,
  kModifierFlagFunction = 0x800000,  ///< set by the function keys and the keys that move the cursor
};

}  // namespace seldial::platform
