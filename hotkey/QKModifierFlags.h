#pragma once

#include <cstdint>

namespace seldial {

/// The modifier bits of a hot key registration (platform::HotKeyModifier) for modifier flags
/// (platform::ModifierFlag, caps lock included); all other bits are dropped.
[[nodiscard]] std::uint32_t QKCarbonModifierFlagsFromCocoaModifierFlags(
    std::uint64_t modifierFlags);

}  // namespace seldial
