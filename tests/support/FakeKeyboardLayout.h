#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Keyboard.h"

namespace seldial::tests {

/// Returns what the test has set, and records the key codes and modifier states that it was asked
/// for.
class FakeKeyboardLayout final : public platform::KeyboardLayout {
 public:
  std::optional<std::string> translate(std::uint16_t keyCode,
                                       std::uint32_t modifierKeyState) override {
    asked.emplace_back(keyCode, modifierKeyState);
    const auto key = keys.find(keyCode);
    if (key == keys.end()) return {};
    return key->second;
  }

  std::map<std::uint16_t, std::string> keys;
  std::vector<std::pair<std::uint16_t, std::uint32_t>> asked;
};

}  // namespace seldial::tests
