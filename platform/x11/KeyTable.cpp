#include "platform/x11/KeyTable.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <array>

namespace seldial::platform::x11 {
namespace {

/// Between an evdev code and the X key code of the same key.
constexpr std::uint16_t kFirstKey = 8;

constexpr std::uint16_t kNone = KEY_RESERVED;

/// The evdev code of each virtual key code, eight a row. The key left of 1 (0x32) and the one right
/// of the left Shift key (0x0A) are taken as on ANSI keyboards.
// clang-format off
constexpr std::array<std::uint16_t, 0x80> kEvdevCodes{
    KEY_A, KEY_S, KEY_D, KEY_F, KEY_H, KEY_G, KEY_Z, KEY_X,                                  // 0x00
    KEY_C, KEY_V, KEY_102ND, KEY_B, KEY_Q, KEY_W, KEY_E, KEY_R,                              // 0x08
    KEY_Y, KEY_T, KEY_1, KEY_2, KEY_3, KEY_4, KEY_6, KEY_5,                                  // 0x10
    KEY_EQUAL, KEY_9, KEY_7, KEY_MINUS, KEY_8, KEY_0, KEY_RIGHTBRACE, KEY_O,                 // 0x18
    KEY_U, KEY_LEFTBRACE, KEY_I, KEY_P, KEY_ENTER, KEY_L, KEY_J, KEY_APOSTROPHE,             // 0x20
    KEY_K, KEY_SEMICOLON, KEY_BACKSLASH, KEY_COMMA, KEY_SLASH, KEY_N, KEY_M, KEY_DOT,        // 0x28
    KEY_TAB, KEY_SPACE, KEY_GRAVE, KEY_BACKSPACE, kNone, KEY_ESC, KEY_RIGHTMETA, KEY_LEFTMETA,  // 0x30
    KEY_LEFTSHIFT, KEY_CAPSLOCK, KEY_LEFTALT, KEY_LEFTCTRL,                                  // 0x38
    KEY_RIGHTSHIFT, KEY_RIGHTALT, KEY_RIGHTCTRL, KEY_FN,                                     // 0x3C
    KEY_F17, KEY_KPDOT, kNone, KEY_KPASTERISK, kNone, KEY_KPPLUS, kNone, KEY_NUMLOCK,        // 0x40
    KEY_VOLUMEUP, KEY_VOLUMEDOWN, KEY_MUTE, KEY_KPSLASH,                                     // 0x48
    KEY_KPENTER, kNone, KEY_KPMINUS, KEY_F18,                                                // 0x4C
    KEY_F19, KEY_KPEQUAL, KEY_KP0, KEY_KP1, KEY_KP2, KEY_KP3, KEY_KP4, KEY_KP5,              // 0x50
    KEY_KP6, KEY_KP7, KEY_F20, KEY_KP8, KEY_KP9, KEY_YEN, KEY_RO, KEY_KPCOMMA,               // 0x58
    KEY_F5, KEY_F6, KEY_F7, KEY_F3, KEY_F8, KEY_F9, KEY_HANJA, KEY_F11,                      // 0x60
    KEY_HANGEUL, KEY_F13, KEY_F16, KEY_F14, kNone, KEY_F10, KEY_COMPOSE, KEY_F12,            // 0x68
    kNone, KEY_F15, KEY_INSERT, KEY_HOME, KEY_PAGEUP, KEY_DELETE, KEY_F4, KEY_END,           // 0x70
    KEY_F2, KEY_PAGEDOWN, KEY_F1, KEY_LEFT, KEY_RIGHT, KEY_DOWN, KEY_UP, kNone,              // 0x78
};
// clang-format on

}  // namespace

std::optional<std::uint8_t> keyAtPosition(std::uint32_t virtualKeyCode) {
  if (virtualKeyCode >= kEvdevCodes.size()) return {};
  const auto code = kEvdevCodes[virtualKeyCode];
  // An X key code has eight bits; the function key's would need nine.
  if (code == kNone || code + kFirstKey > UINT8_MAX) return {};
  return static_cast<std::uint8_t>(code + kFirstKey);
}

std::optional<std::uint16_t> virtualKeyAtPosition(std::uint32_t key) {
  if (key <= kFirstKey) return {};
  const auto* const found = std::find(kEvdevCodes.begin(), kEvdevCodes.end(), key - kFirstKey);
  if (found == kEvdevCodes.end()) return {};
  return static_cast<std::uint16_t>(found - kEvdevCodes.begin());
}

}  // namespace seldial::platform::x11
