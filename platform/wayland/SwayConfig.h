// The bindings in sway's configuration. sway silently replaces a binding by a newer one, and no
// request lists the bindings, so the text of the configuration is the only source.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace seldial::platform::wayland {

/// A key with modifiers that sway can bind.
struct SwayCombination {
  std::uint32_t key = 0;        ///< an X key code
  std::uint32_t modifiers = 0;  ///< HotKeyModifier bits

  /// The combination in sway's notation, "Ctrl+Mod1+40".
  [[nodiscard]] std::string text() const;
};

/// Whether a key has the key symbol with this name.
using HasSymbol = std::function<bool(const std::string& symbol)>;

/// The configuration that sway has loaded.
struct SwayConfiguration {
  std::string text;       ///< of the main file
  std::string directory;  ///< its directory; names of included files are relative to it
};

/// Finds the line in a configuration or its included files that binds the combination outside of
/// binding modes, by the code of the key or one of its symbols.
[[nodiscard]] std::optional<std::string> findBinding(const SwayConfiguration& configuration,
                                                     const SwayCombination& combination,
                                                     const HasSymbol& hasSymbol);

}  // namespace seldial::platform::wayland
