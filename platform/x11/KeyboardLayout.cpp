// The layout of the X server's keyboard, for programs that show hot keys. It is asked for anew each
// time: a display string is wanted when the user looks, and then the layout may have changed.
#include "platform/KeyboardLayout.h"

#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <array>

#include "platform/x11/KeyTable.h"
#include "platform/x11/Xcb.h"

namespace seldial::platform {
namespace {

/// Frees what xkbcommon and XCB made.
struct Release {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  void operator()(xkb_context* context) const { xkb_context_unref(context); }
  void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
  void operator()(xkb_state* state) const { xkb_state_unref(state); }
};

template <class Type>
using Owned = std::unique_ptr<Type, Release>;

Owned<xcb_connection_t> connect() {
  Owned<xcb_connection_t> connection(xcb_connect(nullptr, nullptr));
  const bool usable = xkb_x11_setup_xkb_extension(connection.get(), XKB_X11_MIN_MAJOR_XKB_VERSION,
                                                  XKB_X11_MIN_MINOR_XKB_VERSION,
                                                  XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr,
                                                  nullptr, nullptr, nullptr) != 0;
  return usable ? std::move(connection) : nullptr;
}

/// Nothing is pressed and no lock is on but NumLock: the keys of the keypad say their digits.
Owned<xkb_state> plainState(xkb_keymap* keymap, xkb_layout_index_t layout) {
  Owned<xkb_state> state(xkb_state_new(keymap));
  const auto numLock = xkb_keymap_mod_get_index(keymap, "NumLock");
  const xkb_mod_mask_t locked = numLock == XKB_MOD_INVALID ? 0 : xkb_mod_mask_t{1} << numLock;
  xkb_state_update_mask(state.get(), 0, 0, locked, 0, 0, layout);
  return state;
}

/// Such as the keypad's Enter makes: nothing to look at.
bool isControl(char character) {
  return static_cast<unsigned char>(character) < ' ' || character == '\x7F';
}

class XkbKeyboardLayout final : public KeyboardLayout {
 public:
  std::optional<std::string> translate(std::uint16_t keyCode,
                                       std::uint32_t /*modifierKeyState*/) override {
    const auto key = x11::keyAtPosition(keyCode);
    const auto state = key ? currentState() : nullptr;
    if (!state) return {};
    std::array<char, 64> characters{};
    const int length =
        xkb_state_key_get_utf8(state.get(), *key, characters.data(), characters.size());
    if (length <= 0 || isControl(characters[0])) return {};
    return std::string(characters.data());
  }

 private:
  Owned<xkb_state> currentState() {
    if (!connection_ || xcb_connection_has_error(connection_.get()) != 0) connection_ = connect();
    if (!connection_) return nullptr;
    auto* const xcb = connection_.get();
    const auto keyboard = xkb_x11_get_core_keyboard_device_id(xcb);
    if (keyboard < 0) return nullptr;
    const Owned<xkb_keymap> keymap(
        xkb_x11_keymap_new_from_device(context_.get(), xcb, keyboard, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap) return nullptr;
    const Owned<xkb_state> current(xkb_x11_state_new_from_device(keymap.get(), xcb, keyboard));
    if (!current) return nullptr;
    return plainState(keymap.get(),
                      xkb_state_serialize_layout(current.get(), XKB_STATE_LAYOUT_EFFECTIVE));
  }

  /// The layout comes whole from the server: no files are read.
  const Owned<xkb_context> context_{xkb_context_new(static_cast<xkb_context_flags>(
      XKB_CONTEXT_NO_DEFAULT_INCLUDES | XKB_CONTEXT_NO_ENVIRONMENT_NAMES))};
  Owned<xcb_connection_t> connection_;
};

}  // namespace

std::shared_ptr<KeyboardLayout> makeSystemKeyboardLayout() {
  return std::make_shared<XkbKeyboardLayout>();
}

}  // namespace seldial::platform
