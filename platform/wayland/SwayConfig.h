// What sway's configuration binds. sway replaces a binding by a newer one without a word, and no
// request lists the bindings, so the text of the configuration is all there is to ask.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace seldial::platform::wayland {

/// A key with modifiers, as sway binds it.
struct SwayCombination {
  std::uint32_t key = 0;        ///< an X key code
  std::uint32_t modifiers = 0;  ///< HotKeyModifier bits

  /// "Ctrl+Mod1+40"
  [[nodiscard]] std::string text() const;
};

/// Whether a key has the key symbol with this name.
using HasSymbol = std::function<bool(const std::string& symbol)>;

/// What sway reads at its start.
struct SwayConfiguration {
  std::string text;       ///< of the main file
  std::string directory;  ///< where that is; relative names of included files start there
};

/// The line of a configuration, or of a file that it includes, that binds the combination outside
/// of binding modes, by the key's code or a symbol of it.
[[nodiscard]] std::optional<std::string> findBinding(const SwayConfiguration& configuration,
                                                     const SwayCombination& combination,
                                                     const HasSymbol& hasSymbol);

}  // namespace seldial::platform::wayland
