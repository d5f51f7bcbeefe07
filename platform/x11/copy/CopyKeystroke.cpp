#include "platform/x11/copy/CopyKeystroke.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <utility>

namespace seldial::platform::x11 {
namespace {

/// How long the user gets to release the keys. Most users do, and an application that sees XTEST
/// release a modifier may react to that.
constexpr std::chrono::milliseconds kTimeout{250};

/// Releases keys that may have been down when the connection was lost: a server that keeps running
/// keeps them down. Nothing happens if the server is gone, or if another one has taken its display:
/// there, the keys are not down.
void releaseOverNewConnection(const Keyboards& keyboards, KeySet keys) {
  auto* const xcb = xcb_connect(nullptr, nullptr);
  keys &= keyboards.typedDown(xcb);
  for (unsigned key = 0; key < keys.size(); ++key) {
    if (!keys[key]) continue;
    xcb_test_fake_input(xcb, XCB_KEY_RELEASE, static_cast<xcb_keycode_t>(key), XCB_CURRENT_TIME,
                        XCB_WINDOW_NONE, 0, 0, 0);
  }
  // Waits until the server has executed all requests.
  freed(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
  xcb_disconnect(xcb);
}

}  // namespace

CopyKeystroke::CopyKeystroke(Session& session)
    : loop_(session.loop),
      connection_(session.connection),
      pump_(session.pump),
      keyboards_(session.keyboards),
      hotKeys_(session.hotKeys) {
  pump_.add(*this);
}

CopyKeystroke::~CopyKeystroke() {
  releaseSyntheticKeys();
  pump_.remove(*this);
}

bool CopyKeystroke::isPossible(CopyChord chord) {
  if (!keyboards_.load()) return false;
  const KeyboardMap& map = keyboards_.typingMap();
  return chord == CopyChord::kCopyKey ? map.copy != 0 : map.control != 0 && map.insert != 0;
}

void CopyKeystroke::press(CopyChord chord) {
  chord_ = chord;
  copying_ = true;
  watchKeys();
  releaseHeldKeys();
  const KeyboardMap& map = keyboards_.typingMap();
  const bool copyKey = chord == CopyChord::kCopyKey;
  const xcb_keycode_t key = copyKey ? map.copy : map.insert;
  type(key, false);  // another program may have left it down
  if (!copyKey) type(map.control, true);
  type(key, true);
}

void CopyKeystroke::release() {
  const KeyboardMap& map = keyboards_.typingMap();
  const bool copyKey = chord_ == CopyChord::kCopyKey;
  type(copyKey ? map.copy : map.insert, false);
  if (!copyKey) type(map.control, false);
  pressHeldModifiersAgain();
}

void CopyKeystroke::releaseHeldKeys() {
  const KeySet modifiers = keyboards_.map().heldModifiers;
  KeysDown down;
  const auto held = [&] { return down.physical & (modifiers | hotKeys_.pressedKeys()); };
  changed_ = true;
  pump_.serveUntil(EventPump::Clock::now() + kTimeout, [&] {
    if (std::exchange(changed_, false)) down = keyboards_.down();
    return held().none();
  });
  taken_ = held() & modifiers;
  typeAll(held() | (down.typed & (modifiers | keyboards_.typingMap().heldModifiers)), false);
  synthetic_.reset();
}

void CopyKeystroke::pressHeldModifiersAgain() {
  const xcb_keycode_t control = keyboards_.typingMap().control;
  pump_.handleArrived();  // keys that the user has released so far; none is synthetic yet
  // Only keys that have the same meaning on the XTEST keyboard.
  synthetic_ = std::exchange(taken_, {}) & keyboards_.typingMap().heldModifiers;
  typeAll(synthetic_, true);
  const KeySet physical = keyboards_.down().physical;
  if (!connection_.lost()) pressed_ = synthetic_;
  if (physical[control] && !synthetic_[control]) {
    synthetic_.set(control);
    type(control, true);
  }
  copying_ = false;
  releaseSyntheticKeysExcept(physical);
}

void CopyKeystroke::releaseSyntheticKeysExcept(const KeySet& physical) {
  typeAll(synthetic_ & ~physical, false);
  synthetic_ &= physical;
  watchKeys();
  xcb_flush(connection_.xcb());
}

void CopyKeystroke::releaseSyntheticKeys() {
  if (connection_.lost() && pressed_.any()) releaseOverNewConnection(keyboards_, pressed_);
  if (connection_.lost() || synthetic_.none()) return;
  releaseSyntheticKeysExcept({});
  connection_.synchronise();  // the server drops pending requests when the client ends
}

bool CopyKeystroke::handle(const xcb_generic_event_t& event) {
  const int type = inputEventType(connection_, event);
  if (type != XCB_INPUT_RAW_KEY_PRESS && type != XCB_INPUT_RAW_KEY_RELEASE) return false;
  const auto& key = as<xcb_input_raw_key_press_event_t>(event);
  if (!keyboards_.isPhysical(key.sourceid)) return true;
  changed_ = true;
  if (type == XCB_INPUT_RAW_KEY_RELEASE) releasedByUser(static_cast<xcb_keycode_t>(key.detail));
  return true;
}

void CopyKeystroke::releasedByUser(xcb_keycode_t key) {
  if (synthetic_[key]) type(key, false);
  synthetic_.reset(key);
  watchKeys();
}

// Raw events come from every keyboard, even a grabbed one, and wake the program up for every key.
// So they are selected only while they are needed.
void CopyKeystroke::watchKeys() {
  const bool needed = copying_ || synthetic_.any();
  if (std::exchange(watching_, needed) == needed) return;
  connection_.selectRawInput(
      XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE, needed);
  if (!needed) xcb_flush(connection_.xcb());  // the releases, too
  loop_.setMayEnd(!needed);
}

void CopyKeystroke::typeAll(const KeySet& keys, bool down) {
  for (unsigned key = 0; key < keys.size(); ++key) {
    if (keys[key]) type(static_cast<xcb_keycode_t>(key), down);
  }
}

void CopyKeystroke::type(xcb_keycode_t key, bool down) {
  if (down) pressed_.set(key);
  keyboards_.type(key, down);
}

}  // namespace seldial::platform::x11
