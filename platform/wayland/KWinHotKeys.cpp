#include "platform/wayland/KWinHotKeys.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/Output.h"
#include "platform/linux/KeyTable.h"

namespace seldial::platform::wayland {
namespace {

constexpr const char* kTitle = "Dial the selection";

constexpr std::array kKeypad{kVK_ANSI_KeypadDecimal, kVK_ANSI_KeypadMultiply, kVK_ANSI_KeypadPlus,
                             kVK_ANSI_KeypadDivide,  kVK_ANSI_KeypadEnter,    kVK_ANSI_KeypadMinus,
                             kVK_ANSI_KeypadEquals,  kVK_ANSI_Keypad0,        kVK_ANSI_Keypad1,
                             kVK_ANSI_Keypad2,       kVK_ANSI_Keypad3,        kVK_ANSI_Keypad4,
                             kVK_ANSI_Keypad5,       kVK_ANSI_Keypad6,        kVK_ANSI_Keypad7,
                             kVK_ANSI_Keypad8,       kVK_ANSI_Keypad9,        kVK_JIS_KeypadComma};

/// The name of the action for a combination, "Ctrl+Alt+40".
std::string actionOf(std::uint32_t key, std::uint32_t modifiers) {
  std::string name;
  for (const auto& modifier : kModifiers) {
    if ((modifiers & modifier.hotKeyModifier) != 0) name += modifier.label + std::string("+");
  }
  return name + std::to_string(key);
}

}  // namespace

std::string KWinHotKey::action() const {
  return actionOf(key, modifiers);
}

KWinHotKeys::KWinHotKeys(linux_port::MainLoop& loop, GlobalAccel& shortcuts, HotKeyClaims& claims,
                         ModifierProbe& probe, const SeatKeymap& keymap)
    : RegisteredHotKeys(loop),
      shortcuts_(shortcuts),
      claims_(claims),
      probe_(probe),
      keymap_(keymap) {
  // An action that no running process claims belongs to a killed one.
  for (const auto& action : shortcuts_.actions()) {
    if (claims_.claim(action)) shortcuts_.remove(action);
  }
}

KWinHotKeys::~KWinHotKeys() {
  unregisterAll();
}

std::optional<HotKeyRef> KWinHotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                     HotKeyID hotKeyID) {
  if (!canBeHotKey(keyCode, modifiers)) return {};
  const std::uint32_t key = *linux_port::keyAtPosition(keyCode);
  modifiers &= linux_port::kHotKeyModifiers;
  auto claim = claims_.claim(actionOf(key, modifiers));
  if (!claim) return {};
  if (!probe_.open()) {
    printError("seldial: Plasma has no free key for detecting held modifiers");
    return {};
  }
  auto registration = makeRegistration(hotKeyID, {key, modifiers, {}, std::move(*claim)});
  if (set(registration)) return add(std::move(registration));
  if (registrations_.empty()) probe_.close();
  return {};
}

bool KWinHotKeys::canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) {
  const bool isKeypad = std::find(kKeypad.begin(), kKeypad.end(), keyCode) != kKeypad.end();
  return linux_port::canBeBound(keyCode, modifiers) && !isKeypad;
}

/// Gives the action the codes of the current layouts.
bool KWinHotKeys::set(KWinHotKey& hotKey) {
  const auto keymap = keymap_.file().read();
  auto codes = keymap ? qtKeys(*keymap, hotKey.key, hotKey.modifiers, shortcuts_.qtVersion())
                      : std::vector<int>();
  if (codes == hotKey.codes) return !codes.empty();
  hotKey.codes.clear();
  if (codes.empty()) {
    shortcuts_.remove(hotKey.action());
    return false;
  }
  if (!shortcuts_.set(hotKey.action(), kTitle, codes)) {
    printError("seldial: this combination is already one of Plasma's global shortcuts");
    return false;
  }
  hotKey.codes = std::move(codes);
  return true;
}

void KWinHotKeys::unregisterHotKey(HotKeyRef ref) {
  const auto removed = remove(ref);
  if (!removed) return;
  shortcuts_.remove(removed->action());
  if (registrations_.empty()) probe_.close();
}

void KWinHotKeys::unregisterAll() {
  for (const auto& registration : registrations_) shortcuts_.remove(registration.action());
  registrations_.clear();
  probe_.close();
}

void KWinHotKeys::released(const std::string& action) {
  for (const auto& registration : registrations_) {
    if (registration.action() == action) postReleased(registration.hotKeyID);
  }
}

void KWinHotKeys::keymapChanged() {
  if (registrations_.empty()) return;
  probe_.close();
  bool good = probe_.open();
  for (auto& registration : registrations_) good = set(registration) && good;
  if (!good) printError("seldial: the hot key cannot be registered with the new keyboard layout");
}

}  // namespace seldial::platform::wayland
