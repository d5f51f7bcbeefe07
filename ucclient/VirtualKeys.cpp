#include "ucclient/VirtualKeys.h"

#include <algorithm>
#include <iterator>

namespace seldial {
namespace {

struct NamedKey {
  const char* name;
  std::uint16_t virtualKey;
};

// A virtual key code stands for a place on the keyboard, not for the character that the layout
// puts there. "delete" is what a PC keyboard calls so, not the key that deletes backwards.
// One group of keys a paragraph:
// clang-format off
constexpr NamedKey kKeys[] = {
    // letters
    {"a", 0}, {"b", 11}, {"c", 8}, {"d", 2}, {"e", 14}, {"f", 3}, {"g", 5}, {"h", 4}, {"i", 34},
    {"j", 38}, {"k", 40}, {"l", 37}, {"m", 46}, {"n", 45}, {"o", 31}, {"p", 35}, {"q", 12},
    {"r", 15}, {"s", 1}, {"t", 17}, {"u", 32}, {"v", 9}, {"w", 13}, {"x", 7}, {"y", 16}, {"z", 6},
    // digits
    {"0", 29}, {"1", 18}, {"2", 19}, {"3", 20}, {"4", 21}, {"5", 23}, {"6", 22}, {"7", 26},
    {"8", 28}, {"9", 25},
    // punctuation, by its place on a US keyboard; then keys of ISO and JIS keyboards
    {"section", 10}, {"=", 24}, {"equal", 24}, {"-", 27}, {"minus", 27}, {"]", 30},
    {"rightbracket", 30}, {"bracketright", 30}, {"[", 33}, {"leftbracket", 33}, {"bracketleft", 33},
    {"'", 39}, {"quote", 39}, {"apostrophe", 39}, {";", 41}, {"semicolon", 41}, {"\\", 42},
    {"backslash", 42}, {",", 43}, {"comma", 43}, {"/", 44}, {"slash", 44}, {".", 47},
    {"period", 47}, {"`", 50}, {"grave", 50}, {"yen", 93}, {"underscore", 94},
    // function keys
    {"f1", 122}, {"f2", 120}, {"f3", 99}, {"f4", 118}, {"f5", 96}, {"f6", 97}, {"f7", 98},
    {"f8", 100}, {"f9", 101}, {"f10", 109}, {"f11", 103}, {"f12", 111}, {"f13", 105}, {"f14", 107},
    {"f15", 113}, {"f16", 106}, {"f17", 64}, {"f18", 79}, {"f19", 80}, {"f20", 90},
    // editing, moving and the rest
    {"return", 36}, {"enter", 36}, {"tab", 48}, {"space", 49}, {"backspace", 51}, {"escape", 53},
    {"esc", 53}, {"volumeup", 72}, {"volumedown", 73}, {"mute", 74}, {"eisu", 102}, {"kana", 104},
    {"menu", 110}, {"help", 114}, {"home", 115}, {"pageup", 116}, {"delete", 117},
    {"forwarddelete", 117}, {"end", 119}, {"pagedown", 121}, {"left", 123}, {"right", 124},
    {"down", 125}, {"up", 126},
    // the keypad
    {"keypaddecimal", 65}, {"keypadmultiply", 67}, {"keypadplus", 69}, {"keypadclear", 71},
    {"keypaddivide", 75}, {"keypadenter", 76}, {"keypadminus", 78}, {"keypadequals", 81},
    {"keypad0", 82}, {"keypad1", 83}, {"keypad2", 84}, {"keypad3", 85}, {"keypad4", 86},
    {"keypad5", 87}, {"keypad6", 88}, {"keypad7", 89}, {"keypad8", 91}, {"keypad9", 92},
    {"keypadcomma", 95},
};
// clang-format on

}  // namespace

std::optional<std::uint16_t> virtualKeyNamed(std::string_view name) {
  const auto* const key =
      std::find_if(std::begin(kKeys), std::end(kKeys),
                   [name](const NamedKey& entry) { return entry.name == name; });
  if (key == std::end(kKeys)) return std::nullopt;
  return key->virtualKey;
}

}  // namespace seldial
