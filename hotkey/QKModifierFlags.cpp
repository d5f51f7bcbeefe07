#include "hotkey/QKModifierFlags.h"

#include "platform/HotKeyEvents.h"
#include "platform/VirtualKeys.h"

namespace seldial {

std::uint32_t QKCarbonModifierFlagsFromCocoaModifierFlags(std::uint64_t modifierFlags) {
  std::uint32_t modifiers = 0;
  if ((modifierFlags & platform::kModifierFlagCapsLock) != 0)
    modifiers |= platform::kHotKeyAlphaLock;
  if ((modifierFlags & platform::kModifierFlagShift) != 0) modifiers |= platform::kHotKeyShift;
  if ((modifierFlags & platform::kModifierFlagControl) != 0) modifiers |= platform::kHotKeyControl;
  if ((modifierFlags & platform::kModifierFlagOption) != 0) modifiers |= platform::kHotKeyOption;
  if ((modifierFlags & platform::kModifierFlagCommand) != 0) modifiers |= platform::kHotKeyCommand;
  return modifiers;
}

}  // namespace seldial
