#include "platform/wayland/GnomeHotKeys.h"

#include <algorithm>
#include <utility>

#include "platform/Output.h"
#include "platform/linux/KeyTable.h"

namespace seldial::platform::wayland {
namespace {

using std::chrono::milliseconds;

/// The shortcut that fires only if no modifier is down. PC keyboards do not have its key, which is
/// F18 on others.
constexpr const char* kModifiersUp = "modifiers-up";
constexpr const char* kModifiersUpTrigger = "XF86Launch9";
constexpr xkb_keysym_t kModifiersUpKey = XKB_KEY_XF86Launch9;

/// The interval at which its key is typed. GNOME reports it after about 5 ms.
constexpr milliseconds kInterval{25};

/// How long modifiers may be held before the use is abandoned.
constexpr std::chrono::seconds kMaxUseTime{10};

const BusObject kScreenLock{"org.gnome.Shell", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver"};

}  // namespace

GnomeHotKeys::GnomeHotKeys(linux_port::MainLoop& loop, Bus& bus, MutterRemote& remote,
                           SymbolName symbolName)
    : RegisteredHotKeys(loop),
      remote_(remote),
      symbolName_(std::move(symbolName)),
      timer_(loop),
      portal_(bus, {[this](const std::string& id, std::uint64_t time) { activated(id, time); },
                    [this](const std::string& id) { deactivated(id); },
                    [this](PortalShortcuts::Answer answer) { reportAnswer(answer); }}),
      screenLock_(bus.onSignal(kScreenLock, "ActiveChanged", [this](sd_bus_message* signal) {
        int active = 0;
        if (sd_bus_message_read(signal, "b", &active) > 0 && active != 0) endUse();
      })) {}

std::optional<HotKeyRef> GnomeHotKeys::registerHotKey(std::uint32_t keyCode,
                                                      std::uint32_t modifiers, HotKeyID hotKeyID) {
  if (!canBeHotKey(keyCode, modifiers)) return {};
  const auto ref = add(makeRegistration(hotKeyID, {triggerOf(keyCode, modifiers)}));
  lastReport_.clear();
  const auto answer = bindAll();
  reportAnswer(answer);
  if (answer != PortalShortcuts::Answer::kRefused) return ref;
  unregisterHotKey(ref);
  return {};
}

bool GnomeHotKeys::canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) {
  if (linux_port::isModifierOrLockKey(keyCode)) return false;
  const auto trigger = triggerOf(keyCode, modifiers);
  // Applications copy on Ctrl+Insert, so it cannot be a hot key.
  return !trigger.empty() && trigger != kModifiersUpTrigger && trigger != "CTRL+Insert";
}

void GnomeHotKeys::unregisterHotKey(HotKeyRef ref) {
  remove(ref);
  if (registrations_.empty()) return unregisterAll();
  bindAll();
}

void GnomeHotKeys::unregisterAll() {
  registrations_.clear();
  endUse();
  portal_.release();
}

/// The combination in the portal's notation; empty if there is no such key or it has no symbol.
std::string GnomeHotKeys::triggerOf(std::uint32_t keyCode, std::uint32_t modifiers) const {
  constexpr std::array<std::pair<std::uint32_t, const char*>, 4> kNames{
      {{kHotKeyControl, "CTRL+"},
       {kHotKeyOption, "ALT+"},
       {kHotKeyShift, "SHIFT+"},
       {kHotKeyCommand, "LOGO+"}}};
  const auto key = linux_port::keyAtPosition(keyCode);
  const std::string symbol = key ? symbolName_(*key) : std::string();
  if (symbol.empty()) return {};
  std::string trigger;
  for (const auto& [modifier, name] : kNames) {
    if ((modifiers & modifier) != 0) trigger += name;
  }
  return trigger + symbol;
}

PortalShortcuts::Answer GnomeHotKeys::bindAll() {
  endUse();
  std::vector<PortalShortcut> shortcuts{
      {kModifiersUp, "Tells Seldial that no key is held (leave as it is)", kModifiersUpTrigger}};
  for (const auto& registration : registrations_) {
    shortcuts.push_back({registration.trigger, "Call the selected number", registration.trigger});
  }
  return portal_.bind(std::move(shortcuts));
}

void GnomeHotKeys::reportAnswer(PortalShortcuts::Answer answer) {
  if (answer == PortalShortcuts::Answer::kAsked) {
    return reportOnce("GNOME asks the user to allow the hot key; it works once that is done");
  }
  if (answer == PortalShortcuts::Answer::kRefused) {
    return reportOnce("GNOME refuses the hot key: " + portal_.error());
  }
  std::string keys;
  for (const auto& registration : registrations_) {
    const auto key = portal_.triggerOf(registration.trigger);
    keys += keys.empty() ? "" : ", ";
    keys += key.empty() ? "none" : key;
  }
  if (portal_.triggerOf(kModifiersUp).empty()) {
    return reportOnce(std::string("GNOME has no key for Seldial's shortcut ") +
                      kModifiersUpTrigger +
                      ", without which the hot key does not work; set it in GNOME's settings");
  }
  reportOnce("the hot key in GNOME is: " + keys);
}

/// Writes one line to standard error, unless it repeats the previous one: GNOME reports a change
/// more than once.
void GnomeHotKeys::reportOnce(const std::string& line) {
  if (std::exchange(lastReport_, line) != line) printError("seldial: " + line);
}

/// Whether the shortcut has modifiers. The portal's texts are like "Press <Control>d" in GNOME 48,
/// and like "Ctrl+D" elsewhere.
bool GnomeHotKeys::hasModifiers(const std::string& id) const {
  return portal_.triggerOf(id).find_first_of("<+") != std::string::npos;
}

/// Called repeatedly while the key is held.
void GnomeHotKeys::activated(const std::string& id, std::uint64_t time) {
  if (id == kModifiersUp) return modifiersAreUp(time);
  if (use_) {
    use_->pressed = time;
    return;
  }
  const auto found =
      std::find_if(registrations_.begin(), registrations_.end(),
                   [&](const auto& registration) { return registration.trigger == id; });
  if (found == registrations_.end()) return;
  if (!remote_.open()) {
    return reportOnce("GNOME does not let Seldial type, so nothing can be copied");
  }
  use_ = Use{found->hotKeyID, id, time, false, Clock::now() + kMaxUseTime};
  if (hasModifiers(id)) return probeModifiers();
  timer_.start(kMaxUseTime, [this] { endUse(); });
}

void GnomeHotKeys::deactivated(const std::string& id) {
  if (!use_ || use_->id != id || std::exchange(use_->released, true)) return;
  probeModifiers();
}

/// Types the key of the second shortcut repeatedly, until GNOME reports that shortcut.
void GnomeHotKeys::probeModifiers() {
  if (Clock::now() > use_->deadline || !remote_.type(kModifiersUpKey)) {
    reportOnce("GNOME does not report the release of the hot key's modifiers");
    return endUse();
  }
  timer_.start(kInterval, [this] { probeModifiers(); });
}

/// A report that is older than the press belongs to an earlier use.
void GnomeHotKeys::modifiersAreUp(std::uint64_t time) {
  if (!use_ || time < use_->pressed || (!use_->released && !hasModifiers(use_->id))) return;
  timer_.stop();
  postReleased(std::exchange(use_, std::nullopt)->hotKeyID);
}

void GnomeHotKeys::endUse() {
  timer_.stop();
  if (std::exchange(use_, std::nullopt)) remote_.close();
}

}  // namespace seldial::platform::wayland
