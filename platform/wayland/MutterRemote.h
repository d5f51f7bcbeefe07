// Keys and the clipboard under GNOME, through the remote desktop interface of its compositor
// Mutter.
//
// While a session is open, the top bar shows GNOME's screen sharing indicator, so a session is open
// only during a use of the hot key.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <optional>
#include <string>

#include "platform/wayland/Bus.h"

namespace seldial::platform::wayland {

/// One session at a time. Main thread only.
class MutterRemote {
 public:
  explicit MutterRemote(Bus& bus) : bus_(bus) {}
  ~MutterRemote();
  MutterRemote(const MutterRemote&) = delete;
  MutterRemote& operator=(const MutterRemote&) = delete;

  /// Whether Mutter is on the bus.
  static bool isOffered(Bus& bus);

  /// Opens a session unless one is open. False if Mutter refuses.
  bool open();
  void close();

  /// Types a key, with or without Control. The modifiers that the user holds also apply to it:
  /// there is one keyboard state. Returns before the application has acted. False if there is no
  /// session.
  bool type(xkb_keysym_t key, bool withControl = false);

  /// Takes ownership of the clipboard, without any text. What other programs put there afterwards
  /// counts as copied. Call it once per session. False if Mutter refuses.
  bool takeClipboard();

  /// The text that has been copied since takeClipboard(); see DataControl::copiedText().
  [[nodiscard]] std::optional<std::string> copiedText();

 private:
  [[nodiscard]] BusObject session() const;
  bool press(xkb_keysym_t key, bool down);
  void ownerChanged(sd_bus_message* signal);

  Bus& bus_;
  std::string session_;  ///< its path; empty while none is open
  BusSlot closed_;
  BusSlot owner_;
  std::string copiedType_;  ///< the best type of the copied data; empty if it is not text
};

}  // namespace seldial::platform::wayland
