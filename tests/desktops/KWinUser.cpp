// The user's keyboard and pointer under KWin, for scripts/test-desktops. Each line on standard
// input has words: a number of milliseconds to wait, "+KEY" to press and "-KEY" to release a key or
// a button of the mouse, an evdev code, "@X,Y" to move the pointer. The time of the last of them,
// in seconds, is printed once KWin has handled it.
#include <linux/input-event-codes.h>
#include <poll.h>
#include <wayland-client.h>

#include <cctype>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <sstream>
#include <string>

#include "kwin-fake-input-client.h"

namespace {

void globalAppeared(void* input, wl_registry* registry, std::uint32_t name, const char* interface,
                    std::uint32_t /*version*/) {
  if (std::strcmp(interface, org_kde_kwin_fake_input_interface.name) != 0) return;
  *static_cast<void**>(input) =
      wl_registry_bind(registry, name, &org_kde_kwin_fake_input_interface, 4);
}

const wl_registry_listener kListener{
    globalAppeared, [](void* /*data*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}};

/// Presses a key or a button, or releases it.
void change(org_kde_kwin_fake_input* input, std::uint32_t code, bool down) {
  constexpr std::uint32_t kFirstButton = BTN_MOUSE;
  constexpr std::uint32_t kLastButton = BTN_TASK;
  if (code >= kFirstButton && code <= kLastButton) {
    org_kde_kwin_fake_input_button(input, code, down ? 1 : 0);
  } else {
    org_kde_kwin_fake_input_keyboard_key(input, code, down ? 1 : 0);
  }
}

/// "X,Y"
void movePointer(org_kde_kwin_fake_input* input, const std::string& place) {
  const int x = std::stoi(place);
  const int y = std::stoi(place.substr(place.find(',') + 1));
  org_kde_kwin_fake_input_pointer_motion_absolute(input, wl_fixed_from_int(x),
                                                  wl_fixed_from_int(y));
}

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

int main() {
  wl_display* const display = wl_display_connect(nullptr);
  if (display == nullptr) return 1;
  void* bound = nullptr;
  wl_registry_add_listener(wl_display_get_registry(display), &kListener,
                           static_cast<void*>(&bound));
  wl_display_roundtrip(display);
  if (bound == nullptr) return 2;
  auto* const input = static_cast<org_kde_kwin_fake_input*>(bound);
  org_kde_kwin_fake_input_authenticate(input, "test", "plays the user");
  wl_display_roundtrip(display);
  for (std::string line; std::getline(std::cin, line);) {
    double time = now();
    std::istringstream words(line);
    for (std::string word; words >> word;) {
      const bool changes = word[0] == '+' || word[0] == '-';
      if (changes) time = now();
      if (changes)
        change(input, static_cast<std::uint32_t>(std::stoul(word.substr(1))), word[0] == '+');
      if (word[0] == '@') movePointer(input, word.substr(1));
      if (std::isdigit(word[0]) != 0) poll(nullptr, 0, std::stoi(word));
      wl_display_roundtrip(display);
    }
    std::printf("%.6f\n", time);
    std::fflush(stdout);
  }
  wl_display_disconnect(display);
}
