#include "hotkey/QKKeyStrings.h"

#include <algorithm>

#include "hotkey/QKHotKey.h"

namespace seldial {

using namespace platform;  // NOLINT: keys and modifiers by their short names

namespace {

/// Right modifier keys are not included, on purpose: their glyph is shown in addition to that of
/// the flag.
bool isLeftModifierKey(std::uint16_t keyCode) {
  return std::any_of(kModifiers.begin(), kModifiers.end(),
                     [=](const Modifier& modifier) { return modifier.leftKey == keyCode; });
}

/// Never destroyed: a field may be shown while the process ends.
KeyboardLayout& systemKeyboardLayout() {
  static auto* const layout = new std::shared_ptr<KeyboardLayout>(makeSystemKeyboardLayout());
  return **layout;
}

}  // namespace

std::string QKStringFromKeyCode(std::uint16_t keyCode, std::uint64_t modifierFlags) {
  return QKStringFromKeyCode(keyCode, modifierFlags, systemKeyboardLayout());
}

std::string QKStringFromKeyCode(std::uint16_t keyCode, std::uint64_t modifierFlags,
                                KeyboardLayout& layout) {
  const auto& glyphs = QKKeyGlyphTable();
  std::string text;
  for (const auto& modifier : kModifiers) {
    if ((modifierFlags & modifier.flag) != 0) text += glyphs.at(modifier.leftKey);
  }
  if (isLeftModifierKey(keyCode)) return text;
  const auto glyph = glyphs.find(keyCode);
  if (glyph != glyphs.end()) return text.append(glyph->second);
  // The bits are not shifted to where a layout expects modifiers, on purpose: the result is the
  // key's plain character.
  const auto characters =
      layout.translate(keyCode, QKCarbonModifierFlagsFromCocoaModifierFlags(modifierFlags));
  return characters ? text + *characters : text;
}

const std::map<std::uint16_t, std::string_view>& QKKeyGlyphTable() {
  static const auto* const table = new std::map<std::uint16_t, std::string_view>{
      {kVK_Return, "↩"},
      {kVK_Tab, "⇥"},
      {kVK_Space, "⎵"},
      {kVK_Delete, "⌫"},
      {kVK_Escape, "⎋"},
      {kVK_Command, "⌘"},
      {kVK_Function, "⌘"},  // shown as Command on purpose
      {kVK_Shift, "⇧"},
      {kVK_RightShift, "⇧"},
      {kVK_CapsLock, "⇪"},
      {kVK_Option, "⌥"},
      {kVK_RightOption, "⌥"},
      {kVK_Control, "⌃"},
      {kVK_RightControl, "⌃"},
      {kVK_VolumeUp, "🔊"},
      {kVK_VolumeDown, "🔈"},
      {kVK_Mute, "🔇"},
      {kVK_ForwardDelete, "⌦"},
      {kVK_Home, "↖"},
      {kVK_End, "↘"},
      {kVK_PageUp, "⇞"},
      {kVK_PageDown, "⇟"},
      {kVK_LeftArrow, "←"},
      {kVK_RightArrow, "→"},
      {kVK_DownArrow, "↓"},
      {kVK_UpArrow, "↑"},
      // clang-format off
      {kVK_F1, "F1"}, {kVK_F2, "F2"}, {kVK_F3, "F3"}, {kVK_F4, "F4"}, {kVK_F5, "F5"},
      {kVK_F6, "F6"}, {kVK_F7, "F7"}, {kVK_F8, "F8"}, {kVK_F9, "F9"}, {kVK_F10, "F10"},
      {kVK_F11, "F11"}, {kVK_F12, "F12"}, {kVK_F13, "F13"}, {kVK_F14, "F14"}, {kVK_F15, "F15"},
      {kVK_F16, "F16"}, {kVK_F17, "F17"}, {kVK_F18, "F18"}, {kVK_F19, "F19"}, {kVK_F20, "F20"},
      // clang-format on
  };
  return *table;
}

}  // namespace seldial
