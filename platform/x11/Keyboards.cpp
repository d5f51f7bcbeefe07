#include "platform/x11/Keyboards.h"

#include <xcb/xtest.h>

#include <utility>

#include "platform/linux/KeyTable.h"

namespace seldial::platform::x11 {
namespace {

KeySet keysIn(const xcb_input_query_device_state_reply_t& state) {
  KeySet keys;
  for (auto it = xcb_input_query_device_state_classes_iterator(&state); it.rem > 0;
       xcb_input_input_state_next(&it)) {
    if (it.data->class_id != XCB_INPUT_INPUT_CLASS_KEY) continue;
    const auto& bytes = reinterpret_cast<const xcb_input_key_state_t*>(it.data)->keys;
    for (unsigned key = 0; key < keys.size(); ++key)
      keys[key] = (bytes[key / 8] >> key % 8 & 1) != 0;
  }
  return keys;
}

/// A slave keyboard, with the pending request for its XTEST property.
struct Slave {
  xcb_input_device_id_t device;
  xcb_input_xi_get_property_cookie_t isXTest;
};

bool isXTestDevice(xcb_connection_t* xcb, xcb_input_xi_get_property_cookie_t cookie) {
  const auto reply = freed(xcb_input_xi_get_property_reply(xcb, cookie, nullptr));
  if (!reply || reply->format != 8 || reply->num_items == 0) return false;
  return *static_cast<const std::uint8_t*>(xcb_input_xi_get_property_items(reply.get())) == 1;
}

constexpr unsigned kLockBit = 1U << XCB_MAP_INDEX_LOCK;

/// The virtual key code of a key at `position` that has the modifiers in `flags`: the position's
/// own code if that is a key of one of them, otherwise the left key of the first.
std::uint16_t modifierKeyCode(std::uint16_t position, std::uint64_t flags) {
  const bool isLock = (flags & kModifierFlagCapsLock) != 0;
  if (isLock && position == kVK_CapsLock) return position;
  std::uint16_t left = position;
  for (const auto& modifier : kModifiers) {
    if ((flags & modifier.flag) == 0) continue;
    if (position == modifier.leftKey || position == modifier.rightKey) return position;
    if (left == position) left = modifier.leftKey;
  }
  return isLock && left == position ? std::uint16_t{kVK_CapsLock} : left;
}

}  // namespace

Keyboards::Keyboards(Connection& connection, EventPump& pump) : connection_(connection) {
  pump.add(*this);
}

bool Keyboards::load() {
  if (loaded_) return true;
  selectEvents();
  loaded_ = readDevices() && readMaps();
  return loaded_;
}

// Called before anything is read, so that no change is missed.
void Keyboards::selectEvents() {
  selectInput(connection_, XCB_INPUT_DEVICE_ALL, XCB_INPUT_XI_EVENT_MASK_HIERARCHY);
  selectMapEvents(XCB_XKB_ID_USE_CORE_KBD);
}

// A client that uses XKB gets these events instead of MappingNotify.
void Keyboards::selectMapEvents(xcb_input_device_id_t keyboard) {
  constexpr std::uint16_t kNewKeyboard = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY;
  constexpr std::uint16_t kParts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
  xcb_xkb_select_events(connection_.xcb(), keyboard, kNewKeyboard | XCB_XKB_EVENT_TYPE_MAP_NOTIFY,
                        0, kNewKeyboard, kParts, kParts, nullptr);
}

bool Keyboards::readDevices() {
  auto* const xcb = connection_.xcb();
  const auto cookie = xcb_input_xi_query_device(xcb, XCB_INPUT_DEVICE_ALL);
  const auto reply = freed(xcb_input_xi_query_device_reply(xcb, cookie, nullptr));
  if (!reply) return false;
  master_ = 0;
  std::vector<Slave> slaves;
  for (auto it = xcb_input_xi_query_device_infos_iterator(reply.get()); it.rem > 0;
       xcb_input_xi_device_info_next(&it)) {
    const auto& info = *it.data;
    if (info.type == XCB_INPUT_DEVICE_TYPE_MASTER_KEYBOARD && master_ == 0) master_ = info.deviceid;
    if (info.type != XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD) continue;
    slaves.push_back({info.deviceid, xcb_input_xi_get_property(xcb, info.deviceid, 0,
                                                               connection_.atoms().xtestDevice,
                                                               XCB_ATOM_INTEGER, 0, 1)});
  }
  const auto typingBefore = std::exchange(typing_, 0);
  physical_.clear();
  for (const auto& slave : slaves) {
    const bool types = isXTestDevice(xcb, slave.isXTest);
    if (!types) physical_.push_back(slave.device);
    if (types && typing_ == 0) typing_ = slave.device;
  }
  if (typing_ != 0 && typing_ != typingBefore) selectMapEvents(typing_);
  devicesStale_ = false;
  return master_ != 0 && typing_ != 0;
}

bool Keyboards::readMaps() {
  const KeyboardMapRequest master(connection_.xcb(), master_);
  const KeyboardMapRequest typing(connection_.xcb(), typing_);
  const auto map = master.map();
  const auto typingMap = typing.map();
  if (!map || !typingMap) return false;
  map_ = *map;
  typingMap_ = *typingMap;
  mapsStale_ = false;
  return true;
}

bool Keyboards::handle(const xcb_generic_event_t& event) {
  if (kindOf(event) == connection_.xkbEvent()) {
    mapsStale_ = true;
    return true;
  }
  if (inputEventType(connection_, event) != XCB_INPUT_HIERARCHY) return false;
  devicesStale_ = mapsStale_ = true;
  return true;
}

// A new layout causes a burst of events, and so does every switch from one keyboard to another. The
// maps are read once for all events that have arrived.
void Keyboards::idle() {
  if (!loaded_ || connection_.lost()) return;
  if (devicesStale_ && !readDevices()) return;
  if (!mapsStale_) return;
  const auto before = map_.masks;
  if (readMaps() && map_.masks != before) changed_();
}

KeysDown Keyboards::down() const {
  auto* const xcb = connection_.xcb();
  std::vector<xcb_input_query_device_state_cookie_t> cookies;
  const auto ask = [&](xcb_input_device_id_t device) {
    cookies.push_back(xcb_input_query_device_state(xcb, static_cast<std::uint8_t>(device)));
  };
  ask(typing_);
  for (const auto device : physical_) ask(device);
  KeysDown down;
  for (std::size_t i = 0; i < cookies.size(); ++i) {
    const auto reply = freed(xcb_input_query_device_state_reply(xcb, cookies[i], nullptr));
    if (reply) (i == 0 ? down.typed : down.physical) |= keysIn(*reply);
  }
  return down;
}

KeySet Keyboards::typedDown(xcb_connection_t* xcb) const {
  const auto cookie = xcb_input_query_device_state(xcb, static_cast<std::uint8_t>(typing_));
  const auto reply = freed(xcb_input_query_device_state_reply(xcb, cookie, nullptr));
  return reply ? keysIn(*reply) : KeySet{};
}

void Keyboards::type(xcb_keycode_t key, bool down) {
  xcb_test_fake_input(connection_.xcb(), down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, key,
                      XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
}

void RecordedKeys::begin() {
  held_.reset();
  if (!keyboards_.load()) return;
  const auto down = keyboards_.down();
  held_ = down.physical | down.typed;
}

std::optional<KeyEvent> RecordedKeys::read(std::uint32_t key, std::uint32_t state, bool pressed) {
  const auto position = linux_port::virtualKeyAtPosition(key);
  if (!position) return {};
  if (key < held_.size()) held_.set(key, pressed);
  const unsigned modifiers = modifiersOf(key);
  KeyEvent event;
  if (modifiers == 0) {
    event.type = pressed ? KeyEvent::kKeyDown : KeyEvent::kKeyUp;
    event.keyCode = *position;
    event.modifierFlags = flagsFor(state);
    if (setsFunctionFlag(*position)) event.modifierFlags |= kModifierFlagFunction;
    return event;
  }
  if ((modifiers & kLockBit) != 0 && !pressed) return {};
  event.type = KeyEvent::kFlagsChanged;
  event.keyCode = modifierKeyCode(*position, flagsFor(modifiers));
  event.modifierFlags = flagsFor(stateAfter(state, modifiers, pressed));
  return event;
}

/// The modifier bits of the key. Of the locks, only Caps Lock counts as a modifier; the others are
/// ordinary keys.
unsigned RecordedKeys::modifiersOf(std::uint32_t key) const {
  const auto& map = keyboards_.map();
  unsigned modifiers = 0;
  for (std::size_t bit = 0; key < held_.size() && bit < map.modifierKeys.size(); ++bit) {
    if (map.modifierKeys[bit][key]) modifiers |= 1U << bit;
  }
  return modifiers & (~unsigned{map.masks.locks} | kLockBit);
}

unsigned RecordedKeys::modifiersOfHeldKeys() const {
  unsigned modifiers = 0;
  for (std::uint32_t key = 0; key < held_.size(); ++key) {
    if (held_[key]) modifiers |= modifiersOf(key);
  }
  return modifiers;
}

unsigned RecordedKeys::stateAfter(unsigned state, unsigned modifiers, bool pressed) const {
  if ((modifiers & kLockBit) != 0) return state ^ kLockBit;
  return pressed ? state | modifiers : state & ~(modifiers & ~modifiersOfHeldKeys());
}

std::uint64_t RecordedKeys::flagsFor(unsigned state) const {
  const std::uint64_t flags = keyboards_.map().masks.flagsFor(state);
  return (state & kLockBit) != 0 ? flags | kModifierFlagCapsLock : flags;
}

}  // namespace seldial::platform::x11
