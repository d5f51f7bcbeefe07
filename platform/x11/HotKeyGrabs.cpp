#include "platform/x11/HotKeyGrabs.h"

#include <algorithm>
#include <utility>

#include "platform/Output.h"
#include "platform/linux/KeyTable.h"

namespace seldial::platform::x11 {
namespace {

/// The modifier bits of an event's state; the higher bits are buttons and the keyboard group.
constexpr unsigned kModifierBits = 0xFF;

/// The mask together with every subset of the lock bits.
std::vector<std::uint16_t> variants(std::uint16_t mask, std::uint8_t locks) {
  std::vector<std::uint16_t> result;
  unsigned subset = 0;
  do {
    result.push_back(static_cast<std::uint16_t>(mask | subset));
    subset = (subset - locks) & locks;  // counts within the bits of `locks`
  } while (subset != 0);
  return result;
}

/// A key with one of these modifiers; 0 if there is none.
xcb_keycode_t modifierKeyFor(const KeyboardMap& map, std::uint8_t modifiers) {
  for (std::size_t bit = 0; bit < map.modifierKeys.size(); ++bit) {
    for (unsigned key = 0; (modifiers >> bit & 1) != 0 && key < map.modifierKeys[bit].size();
         ++key) {
      if (map.modifierKeys[bit][key]) return static_cast<xcb_keycode_t>(key);
    }
  }
  return 0;
}

}  // namespace

HotKeyGrabs::HotKeyGrabs(Connection& connection, EventPump& pump, MainQueue& queue,
                         Keyboards& keyboards)
    : RegisteredHotKeys(queue), connection_(connection), keyboards_(keyboards) {
  pump.add(*this);
  keyboards.setModifierChangeHandler([this] { grabAgain(); });
}

std::optional<HotKeyRef> HotKeyGrabs::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                     HotKeyID hotKeyID) {
  const auto wanted = combinationFor(keyCode, modifiers);
  if (!wanted) return {};
  locks_ = keyboards_.map().masks.locks;
  if (!isFree(wanted->key, wanted->mask) || !grab(wanted->key, wanted->mask)) return {};
  return add(makeRegistration(hotKeyID, {wanted->key, modifiers, wanted->mask}));
}

bool HotKeyGrabs::canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) {
  return combinationFor(keyCode, modifiers).has_value();
}

/// Nothing if the keyboard has no such combination or it is reserved.
std::optional<HotKeyGrabs::Combination> HotKeyGrabs::combinationFor(std::uint32_t keyCode,
                                                                    std::uint32_t modifiers) {
  const auto key = linux_port::keyAtPosition(keyCode);
  if (!key || !keyboards_.load() || keyboards_.map().modifiers[*key]) return {};
  const auto mask = keyboards_.map().masks.stateFor(modifiers);
  if (!mask || isReserved_(keyboards_, *key, *mask)) return {};
  return Combination{*key, *mask};
}

void HotKeyGrabs::unregisterHotKey(HotKeyRef ref) {
  if (const auto removed = remove(ref)) {
    if (removed->mask) ungrab(removed->key, *removed->mask);
    connection_.synchronise();  // another program can grab it as soon as this returns
  }
}

bool HotKeyGrabs::isFree(xcb_keycode_t key, std::uint16_t mask) const {
  return !isReserved_(keyboards_, key, mask) &&
         std::none_of(registrations_.begin(), registrations_.end(), [&](const Registration& other) {
           return other.key == key && other.mask == mask;
         });
}

/// Grabs all variants or none: another program may hold only one of them.
bool HotKeyGrabs::grab(xcb_keycode_t key, std::uint16_t mask) {
  std::vector<xcb_void_cookie_t> cookies;
  for (const auto variant : variants(mask, locks_)) {
    cookies.push_back(xcb_grab_key_checked(connection_.xcb(), 0, connection_.root(), variant, key,
                                           XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
  }
  bool granted = true;
  // The first check waits for the replies to all requests.
  for (const auto cookie : cookies) {
    if (freed(xcb_request_check(connection_.xcb(), cookie))) granted = false;
  }
  if (!granted) {
    ungrab(key, mask);
    connection_.synchronise();  // the other variants are free before the refusal is reported
  }
  return granted && !connection_.lost();
}

void HotKeyGrabs::ungrab(xcb_keycode_t key, std::uint16_t mask) {
  for (const auto variant : variants(mask, locks_)) {
    xcb_ungrab_key(connection_.xcb(), key, connection_.root(), variant);
  }
}

/// Called when a layout has assigned other bits to the modifiers. A hot key that cannot be grabbed
/// with this layout may be free with the next one, so its registration stays.
void HotKeyGrabs::grabAgain() {
  for (auto& registration : registrations_) {
    if (registration.mask) ungrab(registration.key, *std::exchange(registration.mask, {}));
  }
  locks_ = keyboards_.map().masks.locks;
  for (auto& registration : registrations_) {
    const auto mask = keyboards_.map().masks.stateFor(registration.modifiers);
    if (mask && isFree(registration.key, *mask) && grab(registration.key, *mask)) {
      registration.mask = mask;
    } else {
      printError("seldial: the hot key cannot be registered with the new keyboard layout");
    }
  }
}

bool HotKeyGrabs::handle(const xcb_generic_event_t& event) {
  // Comparing the whole response_type excludes events that another client has sent.
  if (event.response_type == XCB_KEY_PRESS) {
    press(as<xcb_key_press_event_t>(event));
  } else if (event.response_type == XCB_KEY_RELEASE) {
    release(as<xcb_key_press_event_t>(event));
  } else {
    return false;
  }
  return true;
}

void HotKeyGrabs::press(const xcb_key_press_event_t& event) {
  const unsigned mask = event.state & kModifierBits & ~unsigned{locks_};
  for (auto& registration : registrations_) {
    if (registration.key != event.detail || registration.mask != mask) continue;
    registration.armed = true;
    pressed_.set(event.detail);
  }
}

void HotKeyGrabs::release(const xcb_key_press_event_t& event) {
  pressed_.reset(event.detail);
  for (auto& registration : registrations_) {
    if (registration.key == event.detail && std::exchange(registration.armed, false)) {
      post(registration, event);
    }
  }
}

void HotKeyGrabs::post(const Registration& registration, const xcb_key_press_event_t& event) {
  KeyEvent released;
  released.locationX = event.root_x;
  released.locationY = event.root_y;
  released.modifierFlags = keyboards_.map().masks.flagsFor(event.state);
  released.timestamp = event.time / 1000.0;
  postReleased(registration.hotKeyID, released);
}

bool HotKeyGrabs::type(std::uint16_t keyCode, std::uint64_t modifierFlags) {
  if (!keyboards_.load()) return false;
  const KeyboardMap& map = keyboards_.typingMap();
  std::vector<xcb_keycode_t> keys;
  for (std::size_t i = 0; i < kModifiers.size(); ++i) {
    if ((modifierFlags & kModifiers[i].flag) != 0)
      keys.push_back(modifierKeyFor(map, map.masks.bits[i]));
  }
  keys.push_back(linux_port::keyAtPosition(keyCode).value_or(0));
  if (std::find(keys.begin(), keys.end(), 0) != keys.end()) return false;
  for (const auto key : keys) keyboards_.type(key, true);
  std::for_each(keys.rbegin(), keys.rend(),
                [&](xcb_keycode_t key) { keyboards_.type(key, false); });
  xcb_flush(connection_.xcb());
  return true;
}

}  // namespace seldial::platform::x11
