#include "platform/wayland/CopyKeystroke.h"

#include <chrono>
#include <utility>

#include "kwin-fake-input-client.h"
#include "platform/Output.h"
#include "virtual-keyboard-unstable-v1-client.h"

namespace seldial::platform::wayland {
namespace {

/// The time in milliseconds, by the clock of event timestamps.
std::uint32_t now() {
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

void press(org_kde_kwin_fake_input* input, std::uint32_t key) {
  org_kde_kwin_fake_input_keyboard_key(input, key, WL_KEYBOARD_KEY_STATE_PRESSED);
}

void release(org_kde_kwin_fake_input* input, std::uint32_t key) {
  org_kde_kwin_fake_input_keyboard_key(input, key, WL_KEYBOARD_KEY_STATE_RELEASED);
}

}  // namespace

VirtualKeyboard::VirtualKeyboard(Display& display, const SeatKeymap& keymap)
    : display_(display),
      seatKeymap_(keymap),
      keyboard_(zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(display.virtualKeyboards(),
                                                                        display.seat())) {
  useSeatKeymap();
}

VirtualKeyboard::~VirtualKeyboard() {
  zwp_virtual_keyboard_v1_destroy(keyboard_.release());
}

bool VirtualKeyboard::type(Chord chord) {
  if (!useSeatKeymap()) return false;
  if (chord == Chord::kCopyKey ? !keys_.copy : !keys_.control || !keys_.insert) return false;
  if (chord == Chord::kCopyKey) {
    press(*keys_.copy);
  } else {
    pressWithControl(*keys_.insert);
  }
  display_.willWait();  // all of it is sent at once
  return true;
}

void VirtualKeyboard::pressWithControl(std::uint32_t key) {
  auto* const keyboard = keyboard_.get();
  zwp_virtual_keyboard_v1_key(keyboard, now(), *keys_.control, WL_KEYBOARD_KEY_STATE_PRESSED);
  zwp_virtual_keyboard_v1_modifiers(keyboard, keys_.controlBit, 0, 0, 0);
  press(key);
  zwp_virtual_keyboard_v1_key(keyboard, now(), *keys_.control, WL_KEYBOARD_KEY_STATE_RELEASED);
  zwp_virtual_keyboard_v1_modifiers(keyboard, 0, 0, 0, 0);
}

void VirtualKeyboard::press(std::uint32_t key) {
  zwp_virtual_keyboard_v1_key(keyboard_.get(), now(), key, WL_KEYBOARD_KEY_STATE_PRESSED);
  zwp_virtual_keyboard_v1_key(keyboard_.get(), now(), key, WL_KEYBOARD_KEY_STATE_RELEASED);
}

/// Gives the keyboard the keymap of the seat, so that applications see no other layout. False if
/// there is no usable keymap.
bool VirtualKeyboard::useSeatKeymap() {
  const auto& file = seatKeymap_.file();
  if (!file) return false;
  if (uploaded_ == seatKeymap_.generation()) return true;
  const auto keymap = file.read();
  if (!keymap) return false;
  keys_ = chordKeys(*keymap);
  zwp_virtual_keyboard_v1_keymap(keyboard_.get(), WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.file(),
                                 file.size());
  uploaded_ = seatKeymap_.generation();
  return true;
}

FakeKeyboard::FakeKeyboard(Display& display, const SeatKeymap& keymap,
                           WaitForModifiers waitForModifiers)
    : display_(display), keymap_(keymap), waitForModifiers_(std::move(waitForModifiers)) {
  org_kde_kwin_fake_input_authenticate(display.fakeInput(), "Seldial",
                                       "makes the focused application copy its selection");
}

bool FakeKeyboard::type(Chord chord) {
  const auto keymap = keymap_.file().read();
  const auto keys = keymap ? chordKeys(*keymap) : ChordKeys();
  const auto key = chord == Chord::kCopyKey ? keys.copy : keys.insert;
  if (!key || !keys.control) return false;
  if (!waitForModifiers_()) {
    printError("seldial: a modifier key stayed down, so nothing was copied");
    return false;
  }
  auto* const input = display_.fakeInput();
  if (chord == Chord::kControlInsert) press(input, *keys.control);
  press(input, *key);
  release(input, *key);
  if (chord == Chord::kControlInsert) release(input, *keys.control);
  display_.willWait();  // sends all requests at once
  return true;
}

void FakeKeyboard::tap(std::uint32_t key) {
  press(display_.fakeInput(), key);
  release(display_.fakeInput(), key);
  display_.synchronise();
}

}  // namespace seldial::platform::wayland
