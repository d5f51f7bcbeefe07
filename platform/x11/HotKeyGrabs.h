// Hot keys as key grabs on the root window.
//
// The server reports the press, and every key event until that key is released, only to this
// client. A release is recognised by its key alone and counts if the hot key was pressed before it,
// so the order in which the user releases the keys does not matter. With detectable auto-repeat, a
// held key repeats as presses without releases. Locks are not part of a combination, so each
// combination is grabbed once for every state of Caps Lock, Num Lock and Scroll Lock.
#pragma once

#include <functional>
#include <optional>

#include "platform/linux/RegisteredHotKeys.h"
#include "platform/x11/Keyboards.h"

namespace seldial::platform::x11 {

struct HotKeyGrab {
  xcb_keycode_t key = 0;
  std::uint32_t modifiers = 0;        ///< HotKeyModifier bits
  std::optional<std::uint16_t> mask;  ///< of the grab; nothing while it cannot be grabbed
  bool armed = false;                 ///< pressed, not yet released
};

/// Main thread only.
class HotKeyGrabs final : public linux_port::RegisteredHotKeys<HotKeyGrab>, public EventHandler {
 public:
  HotKeyGrabs(Connection& connection, EventPump& pump, MainQueue& queue, Keyboards& keyboards);

  /// Returns whether a combination of an X key code and a modifier state is reserved.
  using IsReserved =
      std::function<bool(const Keyboards& keyboards, xcb_keycode_t key, std::uint16_t modifiers)>;

  /// From now on refuses the combinations for which `isReserved` returns true: those that the
  /// program types itself and that its own grab would catch. It is called again whenever the layout
  /// has changed.
  void reserve(IsReserved isReserved) { isReserved_ = std::move(isReserved); }

  /// Also refuses modifier keys and reserved combinations.
  std::optional<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                          HotKeyID hotKeyID) override;
  void unregisterHotKey(HotKeyRef ref) override;
  [[nodiscard]] bool canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) override;

  /// Types a hot key; see typeHotKey().
  [[nodiscard]] bool type(std::uint16_t keyCode, std::uint64_t modifierFlags);

  [[nodiscard]] bool hasRegistrations() const { return !registrations_.empty(); }

  /// The hot keys that are held. While one is held, the server sends us every key event, including
  /// synthetic ones.
  [[nodiscard]] const KeySet& pressedKeys() const { return pressed_; }

  bool handle(const xcb_generic_event_t& event) override;

 private:
  struct Combination {
    xcb_keycode_t key = 0;
    std::uint16_t mask = 0;
  };

  [[nodiscard]] std::optional<Combination> combinationFor(std::uint32_t keyCode,
                                                          std::uint32_t modifiers);
  [[nodiscard]] bool isFree(xcb_keycode_t key, std::uint16_t mask) const;
  bool grab(xcb_keycode_t key, std::uint16_t mask);
  void ungrab(xcb_keycode_t key, std::uint16_t mask);
  void grabAgain();
  void press(const xcb_key_press_event_t& event);
  void release(const xcb_key_press_event_t& event);
  void post(const Registration& registration, const xcb_key_press_event_t& event);

  Connection& connection_;
  Keyboards& keyboards_;
  IsReserved isReserved_ = [](const Keyboards&, xcb_keycode_t, std::uint16_t) { return false; };
  std::uint8_t locks_ = 0;  ///< of the grabs
  KeySet pressed_;
};

}  // namespace seldial::platform::x11
