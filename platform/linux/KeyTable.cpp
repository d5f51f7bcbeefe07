#include "platform/linux/KeyTable.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <iterator>

namespace seldial::platform::linux_port {
namespace {

/// The difference between the X key code and the evdev code of a key.
constexpr unsigned kFirstKey = 8;

struct KeyPosition {
  VirtualKey virtualKey;
  std::uint16_t evdevCode;
};

/// The key left of 1 (Grave) and the key right of the left Shift key (Section) are mapped as on
/// ANSI keyboards: the protocol does not report the kind of keyboard.
// clang-format off
constexpr KeyPosition kPositions[] = {
    // letters
    {kVK_ANSI_A, KEY_A}, {kVK_ANSI_B, KEY_B}, {kVK_ANSI_C, KEY_C}, {kVK_ANSI_D, KEY_D},
    {kVK_ANSI_E, KEY_E}, {kVK_ANSI_F, KEY_F}, {kVK_ANSI_G, KEY_G}, {kVK_ANSI_H, KEY_H},
    {kVK_ANSI_I, KEY_I}, {kVK_ANSI_J, KEY_J}, {kVK_ANSI_K, KEY_K}, {kVK_ANSI_L, KEY_L},
    {kVK_ANSI_M, KEY_M}, {kVK_ANSI_N, KEY_N}, {kVK_ANSI_O, KEY_O}, {kVK_ANSI_P, KEY_P},
    {kVK_ANSI_Q, KEY_Q}, {kVK_ANSI_R, KEY_R}, {kVK_ANSI_S, KEY_S}, {kVK_ANSI_T, KEY_T},
    {kVK_ANSI_U, KEY_U}, {kVK_ANSI_V, KEY_V}, {kVK_ANSI_W, KEY_W}, {kVK_ANSI_X, KEY_X},
    {kVK_ANSI_Y, KEY_Y}, {kVK_ANSI_Z, KEY_Z},
    // digits
    {kVK_ANSI_0, KEY_0}, {kVK_ANSI_1, KEY_1}, {kVK_ANSI_2, KEY_2}, {kVK_ANSI_3, KEY_3},
    {kVK_ANSI_4, KEY_4}, {kVK_ANSI_5, KEY_5}, {kVK_ANSI_6, KEY_6}, {kVK_ANSI_7, KEY_7},
    {kVK_ANSI_8, KEY_8}, {kVK_ANSI_9, KEY_9},
    // punctuation
    {kVK_ANSI_Equal, KEY_EQUAL}, {kVK_ANSI_Minus, KEY_MINUS},
    {kVK_ANSI_RightBracket, KEY_RIGHTBRACE}, {kVK_ANSI_LeftBracket, KEY_LEFTBRACE},
    {kVK_ANSI_Quote, KEY_APOSTROPHE}, {kVK_ANSI_Semicolon, KEY_SEMICOLON},
    {kVK_ANSI_Backslash, KEY_BACKSLASH}, {kVK_ANSI_Comma, KEY_COMMA}, {kVK_ANSI_Slash, KEY_SLASH},
    {kVK_ANSI_Period, KEY_DOT}, {kVK_ANSI_Grave, KEY_GRAVE},
    // keypad
    {kVK_ANSI_KeypadDecimal, KEY_KPDOT}, {kVK_ANSI_KeypadMultiply, KEY_KPASTERISK},
    {kVK_ANSI_KeypadPlus, KEY_KPPLUS}, {kVK_ANSI_KeypadClear, KEY_NUMLOCK},
    {kVK_ANSI_KeypadDivide, KEY_KPSLASH}, {kVK_ANSI_KeypadEnter, KEY_KPENTER},
    {kVK_ANSI_KeypadMinus, KEY_KPMINUS}, {kVK_ANSI_KeypadEquals, KEY_KPEQUAL},
    {kVK_ANSI_Keypad0, KEY_KP0}, {kVK_ANSI_Keypad1, KEY_KP1}, {kVK_ANSI_Keypad2, KEY_KP2},
    {kVK_ANSI_Keypad3, KEY_KP3}, {kVK_ANSI_Keypad4, KEY_KP4}, {kVK_ANSI_Keypad5, KEY_KP5},
    {kVK_ANSI_Keypad6, KEY_KP6}, {kVK_ANSI_Keypad7, KEY_KP7}, {kVK_ANSI_Keypad8, KEY_KP8},
    {kVK_ANSI_Keypad9, KEY_KP9},
    // editing and moving
    {kVK_Return, KEY_ENTER}, {kVK_Tab, KEY_TAB}, {kVK_Space, KEY_SPACE},
    {kVK_Delete, KEY_BACKSPACE}, {kVK_Escape, KEY_ESC}, {kVK_Help, KEY_INSERT},
    {kVK_Home, KEY_HOME}, {kVK_PageUp, KEY_PAGEUP}, {kVK_ForwardDelete, KEY_DELETE},
    {kVK_End, KEY_END}, {kVK_PageDown, KEY_PAGEDOWN}, {kVK_LeftArrow, KEY_LEFT},
    {kVK_RightArrow, KEY_RIGHT}, {kVK_DownArrow, KEY_DOWN}, {kVK_UpArrow, KEY_UP},
    {kVK_ContextualMenu, KEY_COMPOSE},
    // modifiers; those without a side in their name are the left ones
    {kVK_RightCommand, KEY_RIGHTMETA}, {kVK_Command, KEY_LEFTMETA}, {kVK_Shift, KEY_LEFTSHIFT},
    {kVK_CapsLock, KEY_CAPSLOCK}, {kVK_Option, KEY_LEFTALT}, {kVK_Control, KEY_LEFTCTRL},
    {kVK_RightShift, KEY_RIGHTSHIFT}, {kVK_RightOption, KEY_RIGHTALT},
    {kVK_RightControl, KEY_RIGHTCTRL}, {kVK_Function, KEY_FN},
    // sound
    {kVK_VolumeUp, KEY_VOLUMEUP}, {kVK_VolumeDown, KEY_VOLUMEDOWN}, {kVK_Mute, KEY_MUTE},
    // function keys
    {kVK_F1, KEY_F1}, {kVK_F2, KEY_F2}, {kVK_F3, KEY_F3}, {kVK_F4, KEY_F4}, {kVK_F5, KEY_F5},
    {kVK_F6, KEY_F6}, {kVK_F7, KEY_F7}, {kVK_F8, KEY_F8}, {kVK_F9, KEY_F9}, {kVK_F10, KEY_F10},
    {kVK_F11, KEY_F11}, {kVK_F12, KEY_F12}, {kVK_F13, KEY_F13}, {kVK_F14, KEY_F14},
    {kVK_F15, KEY_F15}, {kVK_F16, KEY_F16}, {kVK_F17, KEY_F17}, {kVK_F18, KEY_F18},
    {kVK_F19, KEY_F19}, {kVK_F20, KEY_F20},
    // ISO and JIS keyboards
    {kVK_ISO_Section, KEY_102ND}, {kVK_JIS_Yen, KEY_YEN}, {kVK_JIS_Underscore, KEY_RO},
    {kVK_JIS_KeypadComma, KEY_KPCOMMA}, {kVK_JIS_Eisu, KEY_HANJA}, {kVK_JIS_Kana, KEY_HANGEUL},
};
// clang-format on

}  // namespace

std::optional<std::uint8_t> keyAtPosition(std::uint32_t virtualKeyCode) {
  const auto* const found = std::find_if(
      std::begin(kPositions), std::end(kPositions),
      [=](const KeyPosition& position) { return position.virtualKey == virtualKeyCode; });
  if (found == std::end(kPositions)) return {};
  const unsigned key = found->evdevCode + kFirstKey;
  // An X key code has eight bits; the function key's would need nine.
  return key <= UINT8_MAX ? std::optional(static_cast<std::uint8_t>(key)) : std::nullopt;
}

std::optional<std::uint16_t> virtualKeyAtPosition(std::uint32_t key) {
  const auto* const found = std::find_if(
      std::begin(kPositions), std::end(kPositions),
      [=](const KeyPosition& position) { return position.evdevCode + kFirstKey == key; });
  if (found == std::end(kPositions)) return {};
  return found->virtualKey;
}

bool isModifierOrLockKey(std::uint32_t keyCode) {
  const bool isNumLock = keyCode == kVK_ANSI_KeypadClear;
  return keyCode == kVK_CapsLock || isNumLock || isModifierKey(static_cast<std::uint16_t>(keyCode));
}

bool canBeBound(std::uint32_t keyCode, std::uint32_t modifiers) {
  const bool copies = keyCode == kVK_Help && (modifiers & kHotKeyModifiers) == kHotKeyControl;
  return keyAtPosition(keyCode) && !isModifierOrLockKey(keyCode) && !copies;
}

}  // namespace seldial::platform::linux_port
