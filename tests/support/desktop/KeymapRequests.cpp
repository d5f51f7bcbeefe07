#include "tests/support/desktop/KeymapRequests.h"

#include <dlfcn.h>
#include <xkbcommon/xkbcommon-x11.h>

namespace {
int requests = 0;
}  // namespace

// The program's definition takes precedence over that of the shared library.
extern "C" xkb_keymap* xkb_x11_keymap_new_from_device(xkb_context* context, xcb_connection_t* xcb,
                                                      int32_t device,
                                                      xkb_keymap_compile_flags flags) {
  ++requests;
  static const auto real = reinterpret_cast<decltype(&xkb_x11_keymap_new_from_device)>(
      dlsym(RTLD_NEXT, "xkb_x11_keymap_new_from_device"));
  return real(context, xcb, device, flags);
}

namespace seldial::tests {

int keymapRequests() {
  return requests;
}

}  // namespace seldial::tests
