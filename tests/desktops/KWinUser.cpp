// The user's keyboard and pointer under KWin, for scripts/test-desktops. Each line on standard
// input is a number of milliseconds to wait, or "+KEY" to press and "-KEY" to release a key, an
// evdev code. The time of the last of them, in seconds, is printed once KWin has handled it.
#include <unistd.h>
#include <wayland-client.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
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

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

int main() {
  wl_display* const display = wl_display_connect(nullptr);
  if (display == nullptr) return 1;
  void* bound = nullptr;
  wl_registry_add_listener(wl_display_get_registry(display), &kListener, &bound);
  wl_display_roundtrip(display);
  if (bound == nullptr) return 2;
  auto* const input = static_cast<org_kde_kwin_fake_input*>(bound);
  org_kde_kwin_fake_input_authenticate(input, "test", "plays the user");
  wl_display_roundtrip(display);
  for (std::string line; std::getline(std::cin, line);) {
    double time = now();
    std::istringstream words(line);
    for (std::string word; words >> word;) {
      const auto number = static_cast<std::uint32_t>(std::abs(std::stol(word)));
      if (word[0] != '+' && word[0] != '-') {
        usleep(number * 1000);
        continue;
      }
      time = now();
      org_kde_kwin_fake_input_keyboard_key(input, number, word[0] == '+' ? 1 : 0);
      wl_display_roundtrip(display);
    }
    std::printf("%.6f\n", time);
    std::fflush(stdout);
  }
  wl_display_disconnect(display);
}
