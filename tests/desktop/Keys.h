// Key codes of the X server, by what is printed on a US keyboard, and its modifier bits.
#pragma once

#include <cstdint>

namespace seldial::desktop {

enum Key : std::uint8_t {
  kKeyEscape = 9,
  kKeyQ = 24,
  kKeyLeftControl = 37,
  kKeyA = 38,
  kKeyD = 40,
  kKeyF = 41,
  kKeyLeftShift = 50,
  kKeyC = 54,
  kKeyLeftAlt = 64,
  kKeySpace = 65,
  kKeyCapsLock = 66,
  kKeyF5 = 71,
  kKeyNumLock = 77,
  kKeyScrollLock = 78,
  kKeyRightControl = 105,
  kKeyInsert = 118,
  kKeyLeftSuper = 133,
};

enum StateBit : std::uint16_t {
  kStateShift = 1,
  kStateLock = 2,
  kStateControl = 4,
  kStateAlt = 8,
  kStateNumLock = 16,
  kStateSuper = 64,
};

}  // namespace seldial::desktop
