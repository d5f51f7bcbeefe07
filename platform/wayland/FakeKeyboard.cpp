#include "platform/wayland/FakeKeyboard.h"

#include <utility>

#include "kwin-fake-input-client.h"
#include "platform/Output.h"

namespace seldial::platform::wayland {
namespace {

void press(org_kde_kwin_fake_input* input, std::uint32_t key) {
  org_kde_kwin_fake_input_keyboard_key(input, key, WL_KEYBOARD_KEY_STATE_PRESSED);
}

void release(org_kde_kwin_fake_input* input, std::uint32_t key) {
  org_kde_kwin_fake_input_keyboard_key(input, key, WL_KEYBOARD_KEY_STATE_RELEASED);
}

}  // namespace

FakeKeyboard::FakeKeyboard(Display& display, const SeatKeymap& keymap,
                           WaitForModifiers waitForModifiers)
    : display_(display), keymap_(keymap), waitForModifiers_(std::move(waitForModifiers)) {
  org_kde_kwin_fake_input_authenticate(display.fakeInput(), "Seldial",
                                       "makes the application in front copy its selection");
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
  display_.willWait();  // all of it is sent at once
  return true;
}

void FakeKeyboard::tap(std::uint32_t key) {
  press(display_.fakeInput(), key);
  release(display_.fakeInput(), key);
  display_.synchronise();
}

}  // namespace seldial::platform::wayland
