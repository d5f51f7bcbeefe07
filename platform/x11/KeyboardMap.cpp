#include "platform/x11/Keyboards.h"

#define XK_MISCELLANY
#include <X11/XF86keysym.h>
#include <X11/keysymdef.h>

#include <algorithm>
#include <initializer_list>

namespace seldial::platform::x11 {
namespace {

constexpr int kRows = 8;  // Shift, Lock, Control, Mod1 to Mod5

/// The server's replies, accessible by key and by modifier.
class MapReplies {
 public:
  MapReplies(const xcb_input_get_device_key_mapping_reply_t& symbols,
             const xcb_input_get_device_modifier_mapping_reply_t& modifiers, std::uint8_t firstKey)
      : symbols_(xcb_input_get_device_key_mapping_keysyms(&symbols)),
        perKey_(symbols.keysyms_per_keycode),
        keys_(perKey_ == 0 ? 0 : static_cast<int>(symbols.length) / perKey_),
        firstKey_(firstKey),
        modifiers_(xcb_input_get_device_modifier_mapping_keymaps(&modifiers)),
        keysPerRow_(modifiers.keycodes_per_modifier) {}

  [[nodiscard]] KeySet row(int row) const {
    KeySet keys;
    for (int i = 0; i < keysPerRow_; ++i) keys.set(modifiers_[row * keysPerRow_ + i]);
    return keys.reset(0);  // the server fills unused places with 0
  }

  /// Whether the key produces one of the symbols at any level.
  [[nodiscard]] bool produces(unsigned key, std::initializer_list<xcb_keysym_t> wanted) const {
    const auto* const symbols = symbolsOf(key);
    return symbols != nullptr && std::find_first_of(symbols, symbols + perKey_, wanted.begin(),
                                                    wanted.end()) != symbols + perKey_;
  }

  /// The first key that produces the symbol without modifiers, in its first group; 0 if there is
  /// none.
  [[nodiscard]] xcb_keycode_t keyFor(xcb_keysym_t symbol) const {
    for (int key = firstKey_; key < firstKey_ + keys_; ++key) {
      if (*symbolsOf(static_cast<unsigned>(key)) == symbol) return static_cast<xcb_keycode_t>(key);
    }
    return 0;
  }

 private:
  [[nodiscard]] const xcb_keysym_t* symbolsOf(unsigned key) const {
    const int index = static_cast<int>(key) - firstKey_;
    return index < 0 || index >= keys_ ? nullptr : symbols_ + std::ptrdiff_t{index} * perKey_;
  }

  const xcb_keysym_t* symbols_;
  int perKey_;
  int keys_;
  int firstKey_;
  const std::uint8_t* modifiers_;
  int keysPerRow_;
};

/// The first modifier with a key that produces one of the symbols.
std::uint8_t maskOf(const MapReplies& answers, std::initializer_list<xcb_keysym_t> symbols) {
  for (int row = 0; row < kRows; ++row) {
    const KeySet keys = answers.row(row);
    for (unsigned key = 0; key < keys.size(); ++key) {
      if (keys[key] && answers.produces(key, symbols)) return static_cast<std::uint8_t>(1U << row);
    }
  }
  return 0;
}

ModifierMasks masksOf(const MapReplies& answers) {
  const auto fixed = [&](int row) {
    return static_cast<std::uint8_t>(answers.row(row).any() ? 1U << row : 0U);
  };
  ModifierMasks masks;
  masks.bits[kControlModifier] = fixed(XCB_MAP_INDEX_CONTROL);
  masks.bits[kOptionModifier] = maskOf(answers, {XK_Alt_L, XK_Alt_R});
  masks.bits[kShiftModifier] = fixed(XCB_MAP_INDEX_SHIFT);
  masks.bits[kCommandModifier] = maskOf(answers, {XK_Super_L, XK_Super_R});
  const unsigned locks = fixed(XCB_MAP_INDEX_LOCK) | maskOf(answers, {XK_Num_Lock}) |
                         maskOf(answers, {XK_Scroll_Lock});
  unsigned wanted = 0;
  for (const auto bit : masks.bits) wanted |= bit;
  // A lock that shares its bit with a modifier of hot keys cannot be distinguished from it.
  masks.locks = static_cast<std::uint8_t>(locks & ~wanted);
  return masks;
}

KeyboardMap mapOf(const MapReplies& answers) {
  KeyboardMap map;
  map.masks = masksOf(answers);
  for (int row = 0; row < kRows; ++row) {
    map.modifierKeys[static_cast<std::size_t>(row)] = answers.row(row);
    map.modifiers |= answers.row(row);
    if ((map.masks.locks >> row & 1U) == 0) map.heldModifiers |= answers.row(row);
  }
  const KeySet controls = answers.row(XCB_MAP_INDEX_CONTROL);
  for (unsigned key = 0; key < controls.size() && map.control == 0; ++key) {
    if (controls[key]) map.control = static_cast<xcb_keycode_t>(key);
  }
  map.insert = answers.keyFor(XK_Insert);
  map.copy = answers.keyFor(XF86XK_Copy);
  return map;
}

}  // namespace

std::uint64_t ModifierMasks::flagsFor(unsigned state) const {
  std::uint64_t flags = 0;
  for (std::size_t i = 0; i < bits.size(); ++i) {
    if ((state & bits[i]) != 0) flags |= kModifiers[i].flag;
  }
  return flags;
}

std::optional<std::uint8_t> ModifierMasks::stateFor(std::uint32_t hotKeyModifiers) const {
  std::uint32_t unknown = hotKeyModifiers & ~std::uint32_t{kHotKeyAlphaLock};
  std::uint8_t state = 0;
  for (std::size_t i = 0; i < bits.size(); ++i) {
    const std::uint32_t bit = kModifiers[i].hotKeyModifier;
    if ((hotKeyModifiers & bit) == 0 || bits[i] == 0) continue;
    unknown &= ~bit;
    state |= bits[i];
  }
  return unknown == 0 ? std::optional(state) : std::nullopt;
}

KeyboardMapRequest::KeyboardMapRequest(xcb_connection_t* xcb, xcb_input_device_id_t keyboard)
    : xcb_(xcb), firstKey_(xcb_get_setup(xcb)->min_keycode) {
  const auto device = static_cast<std::uint8_t>(keyboard);
  const int count = xcb_get_setup(xcb)->max_keycode - firstKey_ + 1;
  symbols_ =
      xcb_input_get_device_key_mapping(xcb, device, firstKey_, static_cast<std::uint8_t>(count));
  modifiers_ = xcb_input_get_device_modifier_mapping(xcb, device);
}

std::optional<KeyboardMap> KeyboardMapRequest::map() const {
  const auto symbols = freed(xcb_input_get_device_key_mapping_reply(xcb_, symbols_, nullptr));
  const auto modifiers =
      freed(xcb_input_get_device_modifier_mapping_reply(xcb_, modifiers_, nullptr));
  if (!symbols || !modifiers) return {};
  return mapOf(MapReplies(*symbols, *modifiers, firstKey_));
}

}  // namespace seldial::platform::x11
