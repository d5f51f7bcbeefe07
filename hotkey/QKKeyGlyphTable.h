#pragma once

#include <cstdint>
#include <map>
#include <string_view>

namespace seldial {

/// Virtual key codes of the keys that are shown in the same way on every keyboard.
enum QKNamedKey : std::uint16_t {
  kQKKeyCommand = 55,
  kQKKeyShift = 56,
  kQKKeyOption = 58,
  kQKKeyControl = 59,
};

/// What such a key is shown as, UTF-8, by its virtual key code. Built on first use. Any thread.
[[nodiscard]] const std::map<std::uint16_t, std::string_view>& QKKeyGlyphTable();

}  // namespace seldial
