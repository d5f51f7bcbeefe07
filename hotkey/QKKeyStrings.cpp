#include "hotkey/QKKeyStrings.h"

#include <utility>

#include "hotkey/QKKeyGlyphTable.h"
#include "hotkey/QKModifierFlags.h"
#include "platform/KeyboardLayout.h"
#include "platform/VirtualKeys.h"

namespace seldial {

namespace {

constexpr std::pair<platform::ModifierFlag, QKNamedKey> kModifiers[] = {
    {platform::kModifierFlagControl, kQKKeyControl},
    {platform::kModifierFlagOption, kQKKeyOption},
    {platform::kModifierFlagShift, kQKKeyShift},
    {platform::kModifierFlagCommand, kQKKeyCommand},
};

/// The modifier keys on the right are none, on purpose: their glyph is added to that of the flag.
bool isLeftModifierKey(std::uint16_t keyCode) {
  for (const auto& [flag, key] : kModifiers) {
    if (keyCode == key) return true;
  }
  return false;
}

}  // namespace

std::string QKStringFromKeyCode(std::uint16_t keyCode, std::uint64_t modifierFlags) {
  const auto& glyphs = QKKeyGlyphTable();
  std::string text;
  for (const auto& [flag, key] : kModifiers) {
    if ((modifierFlags & flag) != 0) text += glyphs.at(key);
  }
  if (isLeftModifierKey(keyCode)) return text;
  const auto glyph = glyphs.find(keyCode);
  if (glyph != glyphs.end()) return text.append(glyph->second);
  // Not shifted to where a layout looks for modifiers, on purpose: the key's plain character.
  const auto characters = platform::currentKeyboardLayout().translate(
      keyCode, QKCarbonModifierFlagsFromCocoaModifierFlags(modifierFlags));
  return characters ? text + *characters : text;
}

}  // namespace seldial
