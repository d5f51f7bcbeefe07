// X key codes, named after the labels of a US keyboard, and modifier bits.
#pragma once

#include <cstdint>

namespace seldial::tests {

enum Key : std::uint8_t {
  kKeyEscape = 9,
  kKeyTab = 23,
  kKeyQ = 24,
  kKeyReturn = 36,
  kKeyLeftControl = 37,
  kKeyA = 38,
  kKeyD = 40,
  kKeyF = 41,
  kKeyK = 45,
  kKeyLeftShift = 50,
  kKeyC = 54,
  kKeyRightShift = 62,
  kKeyLeftAlt = 64,
  kKeySpace = 65,
  kKeyCapsLock = 66,
  kKeyF4 = 70,
  kKeyF5 = 71,
  kKeyNumLock = 77,
  kKeyScrollLock = 78,
  kKeyRightControl = 105,
  kKeyAltGr = 108,
  kKeyDown = 116,
  kKeyInsert = 118,
  kKeyLeftSuper = 133,
  kKeyMenu = 135,
  kKeyCopy = 141,
};

/// The modifier bits that applications see.
inline constexpr unsigned kStateShift = 1;
inline constexpr unsigned kStateLock = 2;
inline constexpr unsigned kStateControl = 4;
inline constexpr unsigned kStateAlt = 8;
inline constexpr unsigned kStateNumLock = 16;
inline constexpr unsigned kStateSuper = 64;

}  // namespace seldial::tests
