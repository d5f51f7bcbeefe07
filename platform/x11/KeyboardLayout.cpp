// The layout of the X server's keyboard, for programs that display hot keys.
//
// It uses its own connection, so that a program can display hot keys without registering any. The
// keymap, some ten thousand bytes, is requested again only after the server has reported a change.
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <array>
#include <utility>

#include "platform/Keyboard.h"
#include "platform/linux/KeyTable.h"
#include "platform/x11/Xcb.h"

namespace seldial::platform {
namespace {

/// Frees objects of xkbcommon and XCB.
struct Release {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  void operator()(xkb_context* context) const { xkb_context_unref(context); }
  void operator()(xkb_keymap* keymap) const { xkb_keymap_unref(keymap); }
  void operator()(xkb_state* state) const { xkb_state_unref(state); }
};

template <class Type>
using Owned = std::unique_ptr<Type, Release>;

/// The locks that are assumed to be on when a key is displayed: only Num Lock, so that the keypad
/// keys show their digits.
xkb_mod_mask_t shownLocks(xkb_keymap* keymap) {
  const auto numLock = xkb_keymap_mod_get_index(keymap, "NumLock");
  return numLock == XKB_MOD_INVALID ? 0 : xkb_mod_mask_t{1} << numLock;
}

/// Whether the key types a control character, like the keypad's Enter key, which cannot be
/// displayed.
bool isControl(char character) {
  return static_cast<unsigned char>(character) < ' ' || character == '\x7F';
}

class XkbKeyboardLayout final : public KeyboardLayout {
 public:
  std::optional<std::string> translate(std::uint16_t keyCode,
                                       std::uint32_t /*modifierKeyState*/) override {
    const auto key = linux_port::keyAtPosition(keyCode);
    if (!key || !update()) return {};
    std::array<char, 64> characters{};
    const int length =
        xkb_state_key_get_utf8(state_.get(), *key, characters.data(), characters.size());
    if (length <= 0 || isControl(characters[0])) return {};
    return std::string(characters.data());
  }

 private:
  /// Brings `state_` up to date; false if there is no usable server. One short round trip for the
  /// group, which may change with every key; the events of all earlier changes arrive with it.
  bool update() {
    if (!connection_ || xcb_connection_has_error(connection_.get()) != 0) connect();
    if (!connection_) return false;
    auto* const xcb = connection_.get();
    const auto cookie = xcb_xkb_get_state(xcb, XCB_XKB_ID_USE_CORE_KBD);
    const auto current = x11::freed(xcb_xkb_get_state_reply(xcb, cookie, nullptr));
    if (!current) return false;
    while (const auto event = x11::freed(xcb_poll_for_queued_event(xcb))) {
      if (x11::kindOf(*event) == xkbEvent_) state_.reset();
    }
    if (!state_ && !readKeymap()) return false;
    xkb_state_update_mask(state_.get(), 0, 0, locks_, 0, 0, current->group);
    return true;
  }

  void connect() {
    state_.reset();
    connection_.reset(xcb_connect(nullptr, nullptr));
    auto* const xcb = connection_.get();
    if (xkb_x11_setup_xkb_extension(
            xcb, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
            XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, &xkbEvent_, nullptr) == 0) {
      connection_.reset();
      return;
    }
    constexpr std::uint16_t kEvents =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr std::uint16_t kAllParts = 0xFF;
    xcb_xkb_select_events(xcb, XCB_XKB_ID_USE_CORE_KBD, kEvents, 0, kEvents, kAllParts, kAllParts,
                          nullptr);
  }

  bool readKeymap() {
    auto* const xcb = connection_.get();
    const auto keyboard = xkb_x11_get_core_keyboard_device_id(xcb);
    if (keyboard < 0) return false;
    const Owned<xkb_keymap> keymap(
        xkb_x11_keymap_new_from_device(context_.get(), xcb, keyboard, XKB_KEYMAP_COMPILE_NO_FLAGS));
    if (!keymap) return false;
    locks_ = shownLocks(keymap.get());
    state_.reset(xkb_state_new(keymap.get()));
    return state_ != nullptr;
  }

  /// The complete keymap comes from the server: no files are read.
  const Owned<xkb_context> context_{xkb_context_new(static_cast<xkb_context_flags>(
      XKB_CONTEXT_NO_DEFAULT_INCLUDES | XKB_CONTEXT_NO_ENVIRONMENT_NAMES))};
  Owned<xcb_connection_t> connection_;
  std::uint8_t xkbEvent_ = 0;  ///< the kind of every XKB event
  Owned<xkb_state> state_;     ///< keeps the keymap; null after a change
  xkb_mod_mask_t locks_ = 0;
};

}  // namespace

std::shared_ptr<KeyboardLayout> makeSystemKeyboardLayout() {
  return std::make_shared<XkbKeyboardLayout>();
}

}  // namespace seldial::platform
