// Virtual key codes, modifier flags, the one table of modifiers, and the value of a key event.
//
// The protocol and the hot key library use the codes of macOS for keys and modifiers, and the names
// here are those of macOS. A virtual key code identifies a position on the keyboard, not the
// character that the user's layout assigns to it: kVK_ANSI_A is the key right of Caps Lock in every
// layout. Everything here may be used on any thread.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace seldial::platform {

// clang-format off
/// The keys; see the header for the list. Names with ANSI are positions on a US keyboard; ISO and
/// JIS keys exist only on European and Japanese keyboards.
enum VirtualKey : std::uint16_t {
  /// @cond
  // letters
  kVK_ANSI_A = 0, kVK_ANSI_B = 11, kVK_ANSI_C = 8, kVK_ANSI_D = 2, kVK_ANSI_E = 14, kVK_ANSI_F = 3,
  kVK_ANSI_G = 5, kVK_ANSI_H = 4, kVK_ANSI_I = 34, kVK_ANSI_J = 38, kVK_ANSI_K = 40,
  kVK_ANSI_L = 37, kVK_ANSI_M = 46, kVK_ANSI_N = 45, kVK_ANSI_O = 31, kVK_ANSI_P = 35,
  kVK_ANSI_Q = 12, kVK_ANSI_R = 15, kVK_ANSI_S = 1, kVK_ANSI_T = 17, kVK_ANSI_U = 32,
  kVK_ANSI_V = 9, kVK_ANSI_W = 13, kVK_ANSI_X = 7, kVK_ANSI_Y = 16, kVK_ANSI_Z = 6,
  // digits
  kVK_ANSI_0 = 29, kVK_ANSI_1 = 18, kVK_ANSI_2 = 19, kVK_ANSI_3 = 20, kVK_ANSI_4 = 21,
  kVK_ANSI_5 = 23, kVK_ANSI_6 = 22, kVK_ANSI_7 = 26, kVK_ANSI_8 = 28, kVK_ANSI_9 = 25,
  // punctuation
  kVK_ANSI_Equal = 24, kVK_ANSI_Minus = 27, kVK_ANSI_RightBracket = 30, kVK_ANSI_LeftBracket = 33,
  kVK_ANSI_Quote = 39, kVK_ANSI_Semicolon = 41, kVK_ANSI_Backslash = 42, kVK_ANSI_Comma = 43,
  kVK_ANSI_Slash = 44, kVK_ANSI_Period = 47, kVK_ANSI_Grave = 50,
  // keypad
  kVK_ANSI_KeypadDecimal = 65, kVK_ANSI_KeypadMultiply = 67, kVK_ANSI_KeypadPlus = 69,
  kVK_ANSI_KeypadClear = 71, kVK_ANSI_KeypadDivide = 75, kVK_ANSI_KeypadEnter = 76,
  kVK_ANSI_KeypadMinus = 78, kVK_ANSI_KeypadEquals = 81, kVK_ANSI_Keypad0 = 82,
  kVK_ANSI_Keypad1 = 83, kVK_ANSI_Keypad2 = 84, kVK_ANSI_Keypad3 = 85, kVK_ANSI_Keypad4 = 86,
  kVK_ANSI_Keypad5 = 87, kVK_ANSI_Keypad6 = 88, kVK_ANSI_Keypad7 = 89, kVK_ANSI_Keypad8 = 91,
  kVK_ANSI_Keypad9 = 92,
  // editing and moving
  kVK_Return = 36, kVK_Tab = 48, kVK_Space = 49, kVK_Delete = 51, kVK_Escape = 53,
  kVK_Help = 114, kVK_Home = 115, kVK_PageUp = 116, kVK_ForwardDelete = 117, kVK_End = 119,
  kVK_PageDown = 121, kVK_LeftArrow = 123, kVK_RightArrow = 124, kVK_DownArrow = 125,
  kVK_UpArrow = 126, kVK_ContextualMenu = 110,
  // modifiers; those without a side in their name are the left ones
  kVK_RightCommand = 54, kVK_Command = 55, kVK_Shift = 56, kVK_CapsLock = 57, kVK_Option = 58,
  kVK_Control = 59, kVK_RightShift = 60, kVK_RightOption = 61, kVK_RightControl = 62,
  kVK_Function = 63,
  // sound
  kVK_VolumeUp = 72, kVK_VolumeDown = 73, kVK_Mute = 74,
  // function keys
  kVK_F1 = 122, kVK_F2 = 120, kVK_F3 = 99, kVK_F4 = 118, kVK_F5 = 96, kVK_F6 = 97, kVK_F7 = 98,
  kVK_F8 = 100, kVK_F9 = 101, kVK_F10 = 109, kVK_F11 = 103, kVK_F12 = 111, kVK_F13 = 105,
  kVK_F14 = 107, kVK_F15 = 113, kVK_F16 = 106, kVK_F17 = 64, kVK_F18 = 79, kVK_F19 = 80,
  kVK_F20 = 90,
  // ISO and JIS keyboards
  kVK_ISO_Section = 10, kVK_JIS_Yen = 93, kVK_JIS_Underscore = 94, kVK_JIS_KeypadComma = 95,
  kVK_JIS_Eisu = 102, kVK_JIS_Kana = 104,
  /// @endcond
};
// clang-format on

/// F1 to F20, in order.
inline constexpr std::array kFunctionKeys{
    kVK_F1,  kVK_F2,  kVK_F3,  kVK_F4,  kVK_F5,  kVK_F6,  kVK_F7,  kVK_F8,  kVK_F9,  kVK_F10,
    kVK_F11, kVK_F12, kVK_F13, kVK_F14, kVK_F15, kVK_F16, kVK_F17, kVK_F18, kVK_F19, kVK_F20};

/// Device-independent modifier flags, as key events carry them.
enum ModifierFlag : std::uint64_t {
  kModifierFlagCapsLock = 0x10000,   ///< Caps Lock is on
  kModifierFlagShift = 0x20000,      ///< Shift
  kModifierFlagControl = 0x40000,    ///< Control
  kModifierFlagOption = 0x80000,     ///< Option; Alt on PC keyboards
  kModifierFlagCommand = 0x100000,   ///< Command; Super on PC keyboards
  kModifierFlagFunction = 0x800000,  ///< set by keys for which setsFunctionFlag() is true
};

/// Modifier bits of a hot key registration, as the Carbon Event Manager numbers them.
enum HotKeyModifier : std::uint32_t {
  kHotKeyCommand = 0x100,    ///< Command; Super on PC keyboards
  kHotKeyShift = 0x200,      ///< Shift
  kHotKeyAlphaLock = 0x400,  ///< Caps Lock; the ports on Linux ignore it
  kHotKeyOption = 0x800,     ///< Option; Alt on PC keyboards
  kHotKeyControl = 0x1000,   ///< Control
};

/// One modifier that can be part of a hot key.
struct Modifier {
  ModifierFlag flag;              ///< in the flags of a key event
  HotKeyModifier hotKeyModifier;  ///< in a registration
  VirtualKey leftKey;             ///< its key left of the space bar
  VirtualKey rightKey;            ///< its key right of the space bar
  const char* maskName;           ///< in descriptions for developers
  const char* label;              ///< on PC keyboards, where Option is Alt and Command is Super
};

/// The four modifiers of hot keys, in the order in which a shortcut shows them. Caps Lock is not
/// one of them.
inline constexpr std::array<Modifier, 4> kModifiers{{
    {kModifierFlagControl, kHotKeyControl, kVK_Control, kVK_RightControl, "NSControlKeyMask",
     "Ctrl"},
    {kModifierFlagOption, kHotKeyOption, kVK_Option, kVK_RightOption, "NSAlternateKeyMask", "Alt"},
    {kModifierFlagShift, kHotKeyShift, kVK_Shift, kVK_RightShift, "NSShiftKeyMask", "Shift"},
    {kModifierFlagCommand, kHotKeyCommand, kVK_Command, kVK_RightCommand, "NSCommandKeyMask",
     "Super"},
}};

/// Positions in kModifiers.
enum ModifierIndex : std::size_t {
  kControlModifier,  ///< kModifiers[kControlModifier] is Control
  kOptionModifier,   ///< Option
  kShiftModifier,    ///< Shift
  kCommandModifier,  ///< Command
};

/// Whether the key is a left or right modifier key or the function key. Caps Lock is not one.
inline bool isModifierKey(std::uint16_t keyCode) {
  return keyCode == kVK_Function || std::any_of(kModifiers.begin(), kModifiers.end(), [=](auto& m) {
           return keyCode == m.leftKey || keyCode == m.rightKey;
         });
}

/// Whether events of the key carry kModifierFlagFunction: function keys and keys that move the
/// cursor or the page.
inline bool setsFunctionFlag(std::uint16_t keyCode) {
  constexpr std::array kMoving{kVK_Help,      kVK_Home,     kVK_PageUp,    kVK_ForwardDelete,
                               kVK_End,       kVK_PageDown, kVK_LeftArrow, kVK_RightArrow,
                               kVK_DownArrow, kVK_UpArrow};
  return std::find(kFunctionKeys.begin(), kFunctionKeys.end(), keyCode) != kFunctionKeys.end() ||
         std::find(kMoving.begin(), kMoving.end(), keyCode) != kMoving.end();
}

/// A key event from a display server or a toolkit. Fields that the source does not know keep their
/// defaults.
struct KeyEvent {
  /// What happened, as AppKit numbers it.
  enum Type : std::uint32_t {
    kKeyDown = 10,       ///< a key other than a modifier key went down
    kKeyUp = 11,         ///< such a key went up
    kFlagsChanged = 12,  ///< a modifier key went down or up
  };
  static constexpr std::int32_t kNoWindow = -1;  ///< outside every window

  std::uint32_t type = kKeyUp;              ///< a Type; other values are ignored
  double locationX = 0;                     ///< pointer position, pixels from the left
  double locationY = 0;                     ///< pointer position, pixels, vertical
  std::uint64_t modifierFlags = 0;          ///< ModifierFlag bits, others as the source sets them
  double timestamp = 0;                     ///< seconds, by the desktop's own clock
  std::int32_t windowNumber = kNoWindow;    ///< the window that received it
  std::string characters;                   ///< what was typed, UTF-8
  std::string charactersIgnoringModifiers;  ///< what the key types without modifiers
  bool isARepeat = false;                   ///< the key is held and repeats
  std::uint16_t keyCode = 0;                ///< a VirtualKey
};

}  // namespace seldial::platform
