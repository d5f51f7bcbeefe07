#include "platform/wayland/ModifierProbe.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "platform/VirtualKeys.h"

namespace seldial::platform::wayland {
namespace {

/// The difference between the key codes of XKB and those of evdev.
constexpr xkb_keycode_t kFirstKey = 8;

/// Keys that keyboards do not have, in the order of the least likely use.
constexpr std::array<std::uint32_t, 9> kKeys{KEY_F18,   KEY_F17,   KEY_F16,   KEY_F15,  KEY_F14,
                                             KEY_PROG4, KEY_PROG3, KEY_PROG2, KEY_PROG1};

/// How often to check while a modifier is held. Users take about 50 ms to release the keys.
constexpr std::chrono::milliseconds kInterval{10};

std::string upAction(std::uint32_t key) {
  return "modifiers up " + std::to_string(key);
}

std::string heldAction(std::uint32_t key) {
  return "modifiers held " + std::to_string(key);
}

/// The codes of the key with each non-empty combination of modifiers; empty if one has no code.
std::vector<int> codesWithModifiers(xkb_keymap& keymap, xkb_keycode_t key, int qtVersion) {
  std::vector<int> codes;
  for (unsigned combination = 1; combination < 1U << kModifiers.size(); ++combination) {
    std::uint32_t modifiers = 0;
    for (std::size_t i = 0; i < kModifiers.size(); ++i) {
      if ((combination >> i & 1U) != 0) modifiers |= kModifiers[i].hotKeyModifier;
    }
    const auto more = qtKeys(keymap, key, modifiers, qtVersion);
    if (more.empty()) return {};
    codes.insert(codes.end(), more.begin(), more.end());
  }
  return codes;
}

}  // namespace

ModifierProbe::ModifierProbe(linux_port::MainLoop& loop, Bus& bus, GlobalAccel& shortcuts,
                             HotKeyClaims& claims, const SeatKeymap& keymap, TapKey tapKey)
    : loop_(loop),
      bus_(bus),
      shortcuts_(shortcuts),
      claims_(claims),
      keymap_(keymap),
      tapKey_(std::move(tapKey)) {}

bool ModifierProbe::open() {
  if (key_ != 0) return true;
  const auto keymap = keymap_.file().read();
  for (const auto key : kKeys) {
    if (keymap && useKey(*keymap, key)) {
      key_ = key;
      return true;
    }
  }
  return false;
}

/// False if the keymap does not have the key or another program uses it.
bool ModifierProbe::useKey(xkb_keymap& keymap, std::uint32_t key) {
  const auto alone = qtKeys(keymap, key + kFirstKey, 0, shortcuts_.qtVersion());
  const auto withModifiers = codesWithModifiers(keymap, key + kFirstKey, shortcuts_.qtVersion());
  // A modifier that does not change the code would not be detected.
  for (const int code : withModifiers) {
    if (std::find(alone.begin(), alone.end(), code) != alone.end()) return false;
  }
  if (alone.empty() || withModifiers.empty()) return false;
  upClaim_ = claims_.claim(upAction(key));
  heldClaim_ = claims_.claim(heldAction(key));
  if (upClaim_ && heldClaim_ &&
      shortcuts_.set(upAction(key), "(internal) No modifier key is held", alone)) {
    if (shortcuts_.set(heldAction(key), "(internal) A modifier key is held", withModifiers)) {
      return true;
    }
    shortcuts_.remove(upAction(key));
  }
  upClaim_.reset();
  heldClaim_.reset();
  return false;
}

void ModifierProbe::close() {
  if (key_ == 0) return;
  shortcuts_.remove(upAction(key_));
  shortcuts_.remove(heldAction(key_));
  upClaim_.reset();
  heldClaim_.reset();
  key_ = 0;
}

bool ModifierProbe::waitUntilReleased() {
  const auto deadline = std::chrono::steady_clock::now() + kTimeout;
  for (;;) {
    const auto answer = ask();
    if (answer != Answer::kHeld) return answer == Answer::kUp;
    if (loop_.interrupted() || std::chrono::steady_clock::now() > deadline) return false;
    loop_.block(kInterval);
  }
}

std::optional<ModifierProbe::Answer> ModifierProbe::ask() {
  answer_.reset();
  if (key_ == 0) return {};
  tapKey_(key_);
  bus_.waitFor([this] { return answer_.has_value(); }, Bus::kTimeout);
  return answer_;
}

void ModifierProbe::pressed(const std::string& action) {
  if (key_ == 0) return;
  if (action == upAction(key_)) answer_ = Answer::kUp;
  if (action == heldAction(key_)) answer_ = Answer::kHeld;
}

}  // namespace seldial::platform::wayland
