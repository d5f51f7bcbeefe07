// The keyboards of the X server: the master that applications see, the XTEST keyboard through which
// programs type, and the physical ones that the user types on.
#pragma once

#include <functional>
#include <vector>

#include "platform/x11/Connection.h"
#include "platform/x11/EventPump.h"
#include "platform/x11/KeyboardMap.h"

namespace seldial::platform::x11 {

/// Keys that are down. The server keeps this for each keyboard, so typed keys do not hide the
/// user's.
struct KeysDown {
  KeySet physical;  ///< on any physical keyboard
  KeySet typed;     ///< on the XTEST keyboard
};

/// Sends nothing to the server before the first load(). Main thread only.
class Keyboards final : public EventHandler {
 public:
  Keyboards(Connection& connection, EventPump& pump);

  /// Reads the keyboards on the first call; from then on the server's change events keep them
  /// current. False when the server does not answer or has no XTEST keyboard.
  bool load();

  /// Sets the function to call when the modifiers of the master keyboard have changed.
  void whenModifiersChange(std::function<void()> changed) { changed_ = std::move(changed); }

  /// The master keyboard. The server gives it the map of the keyboard that was used last.
  [[nodiscard]] const KeyboardMap& map() const { return map_; }
  /// The XTEST keyboard. Its layout may differ from the user's.
  [[nodiscard]] const KeyboardMap& typingMap() const { return typingMap_; }

  /// Whether an input event with this source comes from a physical keyboard.
  [[nodiscard]] bool isPhysical(xcb_input_device_id_t source) const { return source != typing_; }

  /// Asks the server; one round trip.
  [[nodiscard]] KeysDown down() const;

  /// Presses or releases a key of the XTEST keyboard; sent with the next flush.
  void type(xcb_keycode_t key, bool down);

  bool handle(const xcb_generic_event_t& event) override;
  void idle() override;

 private:
  void selectEvents();
  void selectMapEvents(xcb_input_device_id_t keyboard);
  bool readDevices();
  bool readMaps();

  Connection& connection_;
  std::function<void()> changed_ = [] {};
  bool loaded_ = false;
  bool devicesStale_ = true;
  bool mapsStale_ = true;
  xcb_input_device_id_t master_ = 0;
  xcb_input_device_id_t typing_ = 0;
  std::vector<xcb_input_device_id_t> physical_;
  KeyboardMap map_;
  KeyboardMap typingMap_;
};

}  // namespace seldial::platform::x11
