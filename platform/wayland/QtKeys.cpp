// Key codes of Plasma's global shortcuts.
#include <algorithm>
#include <array>
#include <memory>

#include "platform/VirtualKeys.h"
#include "platform/wayland/GlobalAccel.h"

namespace seldial::platform::wayland {
namespace {

/// The bits and names of a modifier for hot keys, keymaps and Qt.
struct ModifierBit {
  HotKeyModifier hotKeyModifier;
  const char* name;
  int qtBit;
};

constexpr std::array kBits{ModifierBit{kHotKeyShift, XKB_MOD_NAME_SHIFT, 0x02000000},
                           ModifierBit{kHotKeyControl, XKB_MOD_NAME_CTRL, 0x04000000},
                           ModifierBit{kHotKeyOption, XKB_MOD_NAME_ALT, 0x08000000},
                           ModifierBit{kHotKeyCommand, XKB_MOD_NAME_LOGO, 0x10000000}};

/// A range of key symbols with consecutive Qt codes.
struct SymbolRange {
  xkb_keysym_t first;
  xkb_keysym_t last;
  int qtKey;  ///< of the first
};

constexpr int kLaunch0 = 0x010000a2;

/// In Qt 5, the first two of these codes belong to other keys.
constexpr int kLaunchKeysInQt5 = 2;

constexpr auto kRanges = std::to_array<SymbolRange>({
    {XKB_KEY_F1, XKB_KEY_F35, 0x01000030},
    {XKB_KEY_Left, XKB_KEY_Page_Down, 0x01000012},
    {XKB_KEY_dead_grave, XKB_KEY_dead_horn, 0x01001250},
    {XKB_KEY_XF86Launch0, XKB_KEY_XF86LaunchF, kLaunch0},
    {XKB_KEY_Escape, XKB_KEY_Escape, 0x01000000},
    {XKB_KEY_Tab, XKB_KEY_Tab, 0x01000001},
    // KWin expects Tab, although Shift turns it into another symbol.
    {XKB_KEY_ISO_Left_Tab, XKB_KEY_ISO_Left_Tab, 0x01000001},
    {XKB_KEY_BackSpace, XKB_KEY_BackSpace, 0x01000003},
    {XKB_KEY_Return, XKB_KEY_Return, 0x01000004},
    {XKB_KEY_Insert, XKB_KEY_Insert, 0x01000006},
    {XKB_KEY_Delete, XKB_KEY_Delete, 0x01000007},
    {XKB_KEY_Home, XKB_KEY_Home, 0x01000010},
    {XKB_KEY_End, XKB_KEY_End, 0x01000011},
    {XKB_KEY_Menu, XKB_KEY_Menu, 0x01000055},
    {XKB_KEY_XF86AudioLowerVolume, XKB_KEY_XF86AudioLowerVolume, 0x01000070},
    {XKB_KEY_XF86AudioMute, XKB_KEY_XF86AudioMute, 0x01000071},
    {XKB_KEY_XF86AudioRaiseVolume, XKB_KEY_XF86AudioRaiseVolume, 0x01000072},
});

bool isLetter(xkb_keysym_t symbol) {
  return xkb_keysym_to_upper(symbol) != xkb_keysym_to_lower(symbol);
}

/// The Qt code of a symbol; 0 if there is none.
int qtKey(xkb_keysym_t symbol, int qtVersion) {
  const auto* const range = std::find_if(kRanges.begin(), kRanges.end(), [=](const auto& one) {
    return one.first <= symbol && symbol <= one.last;
  });
  if (range != kRanges.end()) {
    const bool moved = range->qtKey == kLaunch0 && qtVersion < 6;
    return range->qtKey + static_cast<int>(symbol - range->first) + (moved ? kLaunchKeysInQt5 : 0);
  }
  const auto character = static_cast<int>(xkb_keysym_to_utf32(symbol));
  const auto upper = static_cast<int>(xkb_keysym_to_utf32(xkb_keysym_to_upper(symbol)));
  if (character < ' ') return 0;
  // Qt codes are those of the capital letters, but KWin does not map Latin-1 to characters outside
  // it.
  return character <= 0xff && upper > 0xff ? character : upper;
}

/// Bits of the modifiers in the keymap.
xkb_mod_mask_t maskOf(xkb_keymap& keymap, std::uint32_t modifiers) {
  xkb_mod_mask_t mask = 0;
  for (const auto& bit : kBits) {
    const auto index = xkb_keymap_mod_get_index(&keymap, bit.name);
    if ((modifiers & bit.hotKeyModifier) != 0 && index != XKB_MOD_INVALID) mask |= 1U << index;
  }
  return mask;
}

/// The modifier bits that KWin compares in addition to the symbol: not those that have already
/// changed the symbol, except Shift with a letter.
int qtBits(xkb_keymap& keymap, xkb_state& state, xkb_keycode_t key, std::uint32_t modifiers) {
  int bits = 0;
  const bool letter = isLetter(xkb_state_key_get_one_sym(&state, key));
  for (const auto& bit : kBits) {
    if ((modifiers & bit.hotKeyModifier) == 0) continue;
    const auto index = xkb_keymap_mod_get_index(&keymap, bit.name);
    const bool consumed =
        xkb_state_mod_index_is_consumed2(&state, key, index, XKB_CONSUMED_MODE_GTK) == 1;
    const bool shiftOfLetter = letter && bit.hotKeyModifier == kHotKeyShift;
    if (!consumed || shiftOfLetter) bits |= bit.qtBit;
  }
  return bits;
}

}  // namespace

std::vector<int> qtKeys(xkb_keymap& keymap, xkb_keycode_t key, std::uint32_t modifiers,
                        int qtVersion) {
  const std::unique_ptr<xkb_state, decltype(&xkb_state_unref)> state(xkb_state_new(&keymap),
                                                                     &xkb_state_unref);
  std::vector<int> keys;
  for (xkb_layout_index_t layout = 0; state && layout < xkb_keymap_num_layouts(&keymap); ++layout) {
    xkb_state_update_mask(state.get(), maskOf(keymap, modifiers), 0, 0, 0, 0, layout);
    const auto symbol = xkb_state_key_get_one_sym(state.get(), key);
    if (qtKey(symbol, qtVersion) == 0) continue;
    int bits = qtBits(keymap, *state, key, modifiers);
    if (symbol == XKB_KEY_ISO_Left_Tab) bits |= 0x02000000;
    const int code = qtKey(symbol, qtVersion) | bits;
    if (std::find(keys.begin(), keys.end(), code) == keys.end()) keys.push_back(code);
  }
  return keys;
}

}  // namespace seldial::platform::wayland
