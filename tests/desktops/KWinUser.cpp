// The user's keyboard and pointer under KWin, for scripts/test-desktops; see User.h.
#include <wayland-client.h>

#include <cstring>

#include "kwin-fake-input-client.h"
#include "tests/desktops/User.h"

namespace seldial::tests {
namespace {

void globalAppeared(void* input, wl_registry* registry, std::uint32_t name, const char* interface,
                    std::uint32_t /*version*/) {
  if (std::strcmp(interface, org_kde_kwin_fake_input_interface.name) != 0) return;
  *static_cast<void**>(input) =
      wl_registry_bind(registry, name, &org_kde_kwin_fake_input_interface, 4);
}

const wl_registry_listener kListener{
    globalAppeared, [](void* /*data*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}};

class KWinUser final : public User {
 public:
  KWinUser(wl_display* display, org_kde_kwin_fake_input* input) : display_(display), input_(input) {
    org_kde_kwin_fake_input_authenticate(input_, "test", "plays the user");
    wl_display_roundtrip(display_);
  }

  void changeKey(std::uint32_t key, bool down) override {
    org_kde_kwin_fake_input_keyboard_key(input_, key, down ? 1 : 0);
    wl_display_roundtrip(display_);
  }
  void changeButton(std::uint32_t button, bool down) override {
    org_kde_kwin_fake_input_button(input_, button, down ? 1 : 0);
    wl_display_roundtrip(display_);
  }
  void movePointer(unsigned x, unsigned y) override {
    org_kde_kwin_fake_input_pointer_motion_absolute(input_, wl_fixed_from_int(static_cast<int>(x)),
                                                    wl_fixed_from_int(static_cast<int>(y)));
    wl_display_roundtrip(display_);
  }

 private:
  wl_display* display_;
  org_kde_kwin_fake_input* input_;
};

}  // namespace
}  // namespace seldial::tests

int main() {
  wl_display* const display = wl_display_connect(nullptr);
  if (display == nullptr) return 1;
  void* input = nullptr;
  wl_registry_add_listener(wl_display_get_registry(display), &seldial::tests::kListener,
                           static_cast<void*>(&input));
  wl_display_roundtrip(display);
  if (input == nullptr) return 2;
  seldial::tests::KWinUser(display, static_cast<org_kde_kwin_fake_input*>(input)).play();
  wl_display_disconnect(display);
}
