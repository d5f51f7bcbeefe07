#include "platform/wayland/KWinHotKeys.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <utility>

#include "platform/Output.h"
#include "platform/linux/KeyTable.h"
#include "platform/wayland/QtKeys.h"

namespace seldial::platform::wayland {
namespace {

constexpr std::uint32_t kHotKeyModifiers =
    kHotKeyCommand | kHotKeyShift | kHotKeyOption | kHotKeyControl;

constexpr const char* kTitle = "Dial the selection";

constexpr std::array kKeypad{kVK_ANSI_KeypadDecimal, kVK_ANSI_KeypadMultiply, kVK_ANSI_KeypadPlus,
                             kVK_ANSI_KeypadDivide,  kVK_ANSI_KeypadEnter,    kVK_ANSI_KeypadMinus,
                             kVK_ANSI_KeypadEquals,  kVK_ANSI_Keypad0,        kVK_ANSI_Keypad1,
                             kVK_ANSI_Keypad2,       kVK_ANSI_Keypad3,        kVK_ANSI_Keypad4,
                             kVK_ANSI_Keypad5,       kVK_ANSI_Keypad6,        kVK_ANSI_Keypad7,
                             kVK_ANSI_Keypad8,       kVK_ANSI_Keypad9,        kVK_JIS_KeypadComma};

/// "Ctrl+Alt+40"
std::string actionOf(std::uint32_t key, std::uint32_t modifiers) {
  std::string name;
  for (const auto& modifier : kModifiers) {
    if ((modifiers & modifier.hotKeyModifier) != 0) name += modifier.label + std::string("+");
  }
  return name + std::to_string(key);
}

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

std::string KWinHotKeys::Registration::action() const {
  return actionOf(key, modifiers);
}

KWinHotKeys::KWinHotKeys(linux_port::MainLoop& loop, GlobalAccel& shortcuts, HotKeyClaims& claims,
                         ModifierProbe& probe, const SeatKeymap& keymap)
    : loop_(loop), shortcuts_(shortcuts), claims_(claims), probe_(probe), keymap_(keymap) {
  // An action that no running program claims is a killed program's.
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
  modifiers &= kHotKeyModifiers;
  auto claim = claims_.claim(actionOf(key, modifiers));
  if (!claim) return {};
  if (!probe_.open()) {
    printError("seldial: Plasma has no free key to find held modifiers with");
    return {};
  }
  Registration registration{++lastRef_, hotKeyID, key, modifiers, {}, std::move(*claim)};
  if (set(registration)) {
    registrations_.push_back(std::move(registration));
    return lastRef_;
  }
  if (registrations_.empty()) probe_.close();
  return {};
}

bool KWinHotKeys::canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) {
  const bool isKeypad = std::find(kKeypad.begin(), kKeypad.end(), keyCode) != kKeypad.end();
  return canBeBound(keyCode, modifiers) && !isKeypad;
}

/// Gives the action the codes of the present layouts.
bool KWinHotKeys::set(Registration& registration) {
  const auto keymap = keymap_.file().read();
  auto codes =
      keymap ? qtKeys(*keymap, registration.key, registration.modifiers, shortcuts_.qtVersion())
             : std::vector<int>();
  if (codes == registration.codes) return !codes.empty();
  registration.codes.clear();
  if (codes.empty()) {
    shortcuts_.remove(registration.action());
    return false;
  }
  if (!shortcuts_.set(registration.action(), kTitle, codes)) {
    printError("seldial: another program has this combination among Plasma's global shortcuts");
    return false;
  }
  registration.codes = std::move(codes);
  return true;
}

void KWinHotKeys::unregisterHotKey(HotKeyRef ref) {
  const auto found =
      std::find_if(registrations_.begin(), registrations_.end(),
                   [ref](const Registration& registration) { return registration.ref == ref; });
  if (found == registrations_.end()) return;
  shortcuts_.remove(found->action());
  registrations_.erase(found);
  if (registrations_.empty()) probe_.close();
}

void KWinHotKeys::unregisterAll() {
  for (const auto& registration : registrations_) shortcuts_.remove(registration.action());
  registrations_.clear();
  probe_.close();
}

void KWinHotKeys::released(const std::string& action) {
  for (const auto& registration : registrations_) {
    if (registration.action() != action) continue;
    HotKeyReleased released;
    released.hotKeyID = registration.hotKeyID;
    released.event.timestamp = now();
    loop_.async([handler = handler_, released] {
      if (*handler) (*handler)(released);
    });
  }
}

void KWinHotKeys::keymapChanged() {
  if (registrations_.empty()) return;
  probe_.close();
  bool good = probe_.open();
  for (auto& registration : registrations_) good = set(registration) && good;
  if (!good) printError("seldial: the hot key cannot be had with the new keyboard layout");
}

}  // namespace seldial::platform::wayland
