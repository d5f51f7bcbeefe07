#include "tests/support/wayland/UserKeyboard.h"

#include <sys/mman.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>

#include "virtual-keyboard-unstable-v1-client.h"

namespace seldial::tests {
namespace {

constexpr xkb_keycode_t kFirstKey = 8;

std::uint32_t now() {
  const auto time = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint32_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(time).count());
}

}  // namespace

std::shared_ptr<xkb_keymap> keymapOf(const char* layouts) {
  const std::shared_ptr<xkb_context> context(xkb_context_new(XKB_CONTEXT_NO_FLAGS),
                                             xkb_context_unref);
  xkb_rule_names names{};
  names.layout = layouts;
  return {xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS),
          xkb_keymap_unref};
}

platform::wayland::KeymapFile fileOf(xkb_keymap& keymap) {
  const std::unique_ptr<char, decltype(&std::free)> text(
      xkb_keymap_get_as_string(&keymap, XKB_KEYMAP_FORMAT_TEXT_V1), &std::free);
  const auto size = std::strlen(text.get()) + 1;
  const int file = memfd_create("keymap", MFD_CLOEXEC);
  if (write(file, text.get(), size) != static_cast<ssize_t>(size)) std::abort();
  return {file, static_cast<std::uint32_t>(size)};
}

UserKeyboard::UserKeyboard(const std::string& socketPath, const char* layout)
    : WaylandClient(socketPath) {
  auto* const seat = static_cast<wl_seat*>(global(wl_seat_interface));
  auto* const manager = static_cast<zwp_virtual_keyboard_manager_v1*>(
      global(zwp_virtual_keyboard_manager_v1_interface));
  const auto keymap = keymapOf(layout);
  state_.reset(xkb_state_new(keymap.get()), xkb_state_unref);
  const auto file = fileOf(*keymap);
  keyboard_ = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager, seat);
  zwp_virtual_keyboard_v1_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file.file(),
                                 file.size());
  zwp_virtual_keyboard_manager_v1_destroy(manager);
  wl_seat_destroy(seat);
  start();
  synchronise();
}

UserKeyboard::~UserKeyboard() {
  stop();
  zwp_virtual_keyboard_v1_destroy(keyboard_);
}

void UserKeyboard::set(unsigned key, bool down) {
  {
    const auto locked = lock();
    zwp_virtual_keyboard_v1_key(keyboard_, now(), key, down ? 1 : 0);
    auto* const state = state_.get();
    xkb_state_update_key(state, key + kFirstKey, down ? XKB_KEY_DOWN : XKB_KEY_UP);
    zwp_virtual_keyboard_v1_modifiers(keyboard_,
                                      xkb_state_serialize_mods(state, XKB_STATE_MODS_DEPRESSED),
                                      xkb_state_serialize_mods(state, XKB_STATE_MODS_LATCHED),
                                      xkb_state_serialize_mods(state, XKB_STATE_MODS_LOCKED), 0);
  }
  synchronise();
}

void UserKeyboard::press(const std::vector<unsigned>& keys) {
  for (const auto key : keys) set(key, true);
}

void UserKeyboard::release(const std::vector<unsigned>& keys) {
  const std::vector<unsigned> reversed(keys.rbegin(), keys.rend());
  for (const auto key : reversed) set(key, false);
}

void UserKeyboard::tap(unsigned key) {
  set(key, true);
  set(key, false);
}

void UserKeyboard::use(const std::vector<unsigned>& modifiers, unsigned key) {
  press(modifiers);
  tap(key);
  release(modifiers);
}

}  // namespace seldial::tests
