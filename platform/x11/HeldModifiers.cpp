#include "platform/x11/HeldModifiers.h"

#include <utility>

#include "platform/x11/InputEvents.h"

namespace seldial::platform::x11 {
namespace {

/// How long the user gets to let go by himself: most do, and an application that sees a modifier
/// go up by our hand may take it for a keystroke of its own.
constexpr std::chrono::milliseconds kPatience{250};

}  // namespace

HeldModifiers::HeldModifiers(Connection& connection, EventPump& pump, Keyboards& keyboards,
                             HotKeyGrabs& hotKeys)
    : connection_(connection), pump_(pump), keyboards_(keyboards), hotKeys_(hotKeys) {
  pump.add(*this);
}

void HeldModifiers::release() {
  underWay_ = true;
  watchKeys();
  const KeySet modifiers = keyboards_.map().heldModifiers;
  KeysDown down;
  const auto held = [&] { return down.physical & (modifiers | hotKeys_.pressedKeys()); };
  changed_ = true;
  pump_.serveUntil(EventPump::Clock::now() + kPatience, [&] {
    if (std::exchange(changed_, false)) down = keyboards_.down();
    return held().none();
  });
  taken_ = held() & modifiers;
  typeAll(held() | (down.typed & (modifiers | keyboards_.typingMap().heldModifiers)), false);
  debts_.reset();
}

void HeldModifiers::restore(xcb_keycode_t control) {
  pump_.handleArrived();  // what the user did until now concerns no debt yet
  // Only keys that mean the same to the keyboard through which they are pressed.
  debts_ = std::exchange(taken_, {}) & keyboards_.typingMap().heldModifiers;
  typeAll(debts_, true);
  const KeySet physical = keyboards_.down().physical;
  if (physical[control] && !debts_[control]) {
    debts_.set(control);
    keyboards_.type(control, true);
  }
  underWay_ = false;
  settle(physical);
}

/// Pays for the keys that the user no longer holds.
void HeldModifiers::settle(const KeySet& physical) {
  typeAll(debts_ & ~physical, false);
  debts_ &= physical;
  watchKeys();
  xcb_flush(connection_.xcb());
}

void HeldModifiers::payDebts() {
  if (debts_.none()) return;
  settle({});
  connection_.synchronise();  // what is under way when a connection is closed is not acted on
}

bool HeldModifiers::handle(const xcb_generic_event_t& event) {
  const int type = inputEventType(connection_, event);
  if (type != XCB_INPUT_RAW_KEY_PRESS && type != XCB_INPUT_RAW_KEY_RELEASE) return false;
  const auto& key = as<xcb_input_raw_key_press_event_t>(event);
  if (!keyboards_.isPhysical(key.sourceid)) return true;
  changed_ = true;
  if (type == XCB_INPUT_RAW_KEY_RELEASE) releasedByUser(static_cast<xcb_keycode_t>(key.detail));
  return true;
}

void HeldModifiers::releasedByUser(xcb_keycode_t key) {
  if (debts_[key]) keyboards_.type(key, false);
  debts_.reset(key);
  watchKeys();
}

// Raw events come from every keyboard and whatever is grabbed, at the price of a wake-up for every
// key: they are chosen only while they are needed.
void HeldModifiers::watchKeys() {
  const bool needed = underWay_ || debts_.any();
  if (std::exchange(watching_, needed) == needed) return;
  selectInput(connection_, XCB_INPUT_DEVICE_ALL_MASTER,
              needed
                  ? XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE
                  : 0U);
}

void HeldModifiers::typeAll(const KeySet& keys, bool down) {
  for (unsigned key = 0; key < keys.size(); ++key) {
    if (keys[key]) keyboards_.type(static_cast<xcb_keycode_t>(key), down);
  }
}

}  // namespace seldial::platform::x11
