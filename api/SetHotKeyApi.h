#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace seldial {

/// The command "SetHotKey" as it came in.
struct SetHotKeyApi {
  /// A missing or unusable virtual key code. A client that sends this very number gets no key.
  static constexpr std::uint16_t kNoVirtualKey = 65535;
  static constexpr std::uint16_t kDefaultReadDelay = 500;

  std::optional<std::string> Command;
  bool ModifierAlt = false;
  bool ModifierCommand = false;
  bool ModifierCtrl = false;
  bool ModifierShift = false;
  std::uint16_t VirtualKey = kNoVirtualKey;
  std::uint16_t ReadDelay = kDefaultReadDelay;  ///< milliseconds

  /// Reads one JSON text. What is missing or unusable keeps its default, the whole record when the
  /// text is not valid JSON. An array at the top level is a fatal error.
  [[nodiscard]] static SetHotKeyApi fromJSONString(const std::string& text);
};

}  // namespace seldial
