// Keys and the clipboard of GNOME, by the interface of its compositor Mutter for remote desktops.
//
// While a session is open, the top bar shows GNOME's sign of a shared screen, so one is open for
// the time of a use only.
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

  /// Opens a session unless one is open. False when Mutter refuses.
  bool open();
  void close();

  /// Types a key, with Control held down or not. The modifiers that the user holds apply to it as
  /// well: there is one keyboard state. Returns before the application has acted. False when there
  /// is no session.
  bool type(xkb_keysym_t key, bool withControl = false);

  /// Makes the clipboard ours, with nothing in it that is a text. What others put there afterwards
  /// counts as copied. Once in a session. False when Mutter refuses.
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
  std::string copiedType_;  ///< the best type of what was copied; empty when it is no text
};

}  // namespace seldial::platform::wayland
