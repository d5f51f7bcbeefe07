// Modifiers that the user still holds while a keystroke is typed on his behalf.
//
// An application sees one keyboard: what the user holds is part of every typed chord. So the user
// gets a moment to let go; what is held after it is released by typing, and pressed again once the
// keystroke is done, so that the hot key can be used again without letting go. A modifier that we
// pressed stays down when the user lets go of his own key, so each is a debt: it is released by
// typing as soon as the user's key goes up.
#pragma once

#include "platform/x11/HotKeyGrabs.h"
#include "platform/x11/Keyboards.h"

namespace seldial::platform::x11 {

/// Main thread only.
class HeldModifiers final : public EventHandler {
 public:
  HeldModifiers(Connection& connection, EventPump& pump, Keyboards& keyboards,
                HotKeyGrabs& hotKeys);

  /// Waits at most a quarter of a second until the user holds no modifier and no hot key, then
  /// releases what is still down, by his hand or another program's.
  void release();

  /// Presses again what release() took, where the user still holds it. `control` was released by
  /// the keystroke itself.
  void restore(xcb_keycode_t control);

  /// Releases everything that was pressed here; the last act before the program ends.
  void payDebts();

  bool handle(const xcb_generic_event_t& event) override;

 private:
  void settle(const KeySet& physical);
  void releasedByUser(xcb_keycode_t key);
  void watchKeys();
  void typeAll(const KeySet& keys, bool down);

  Connection& connection_;
  EventPump& pump_;
  Keyboards& keyboards_;
  HotKeyGrabs& hotKeys_;
  bool underWay_ = false;  ///< between release() and restore()
  bool watching_ = false;  ///< raw key events are chosen
  bool changed_ = false;   ///< the user pressed or released a key since it was last looked at
  KeySet taken_;           ///< released by typing for the keystroke under way
  KeySet debts_;           ///< pressed by typing because the user holds them
};

}  // namespace seldial::platform::x11
