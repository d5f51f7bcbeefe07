// The keyboards of the X server: the one that applications see, the one through which programs
// type (XTEST), and those that the user types on.
#pragma once

#include <functional>
#include <vector>

#include "platform/x11/Connection.h"
#include "platform/x11/EventPump.h"
#include "platform/x11/KeyboardMap.h"

namespace seldial::platform::x11 {

/// Keys that are down now. The server knows it of each keyboard, whatever programs have typed.
struct KeysDown {
  KeySet physical;  ///< on any keyboard that the user types on
  KeySet typed;     ///< on the one through which programs type
};

/// Main thread only. Nothing is asked of the server before the first load().
class Keyboards final : public EventHandler {
 public:
  Keyboards(Connection& connection, EventPump& pump);

  /// Reads the keyboards once; from then on they are kept current. False when the server does not
  /// tell, or has no keyboard through which programs type.
  bool load();

  /// Called when the modifiers of the keyboard that applications see have changed.
  void whenModifiersChange(std::function<void()> changed) { changed_ = std::move(changed); }

  /// The keyboard that applications see. The server gives it the map of the one used last.
  [[nodiscard]] const KeyboardMap& map() const { return map_; }
  /// The keyboard through which programs type. Its layout may differ from the user's.
  [[nodiscard]] const KeyboardMap& typingMap() const { return typingMap_; }

  /// Whether an input event with this source comes from a keyboard that the user types on.
  [[nodiscard]] bool isPhysical(xcb_input_device_id_t source) const { return source != typing_; }

  /// One round trip.
  [[nodiscard]] KeysDown down() const;

  /// Types one key going down or up; sent with the next flush.
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
