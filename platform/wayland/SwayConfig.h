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

/// Whether the key has this key symbol, given by its name.
using KeyHasSymbol = std::function<bool(std::uint32_t key, const std::string& symbol)>;

/// The line of a configuration that binds the combination outside of binding modes, by the key's
/// code or a symbol of it. Files that the configuration includes are not read.
[[nodiscard]] std::optional<std::string> findBinding(const std::string& configuration,
                                                     const SwayCombination& combination,
                                                     const KeyHasSymbol& keyHasSymbol);

}  // namespace seldial::platform::wayland
