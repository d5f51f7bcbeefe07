// XInput 2: selecting events on the root window, and recognising them.
#pragma once

#include <xcb/xinput.h>

#include "platform/x11/Connection.h"

namespace seldial::platform::x11 {

/// Selects the events of `devices` (one device or a group) that the server sends for the root
/// window.
inline void selectInput(const Connection& connection, xcb_input_device_id_t devices,
                        std::uint32_t events) {
  const struct {
    xcb_input_event_mask_t head;
    std::uint32_t mask;
  } selection{{devices, 1}, events};
  xcb_input_xi_select_events(connection.xcb(), connection.root(), 1, &selection.head);
}

/// The XInput 2 type of an event; 0 for an event of another kind.
inline int inputEventType(const Connection& connection, const xcb_generic_event_t& event) {
  const auto& generic = as<xcb_ge_generic_event_t>(event);
  const bool input =
      kindOf(event) == XCB_GE_GENERIC && generic.extension == connection.inputExtension();
  return input ? generic.event_type : 0;
}

}  // namespace seldial::platform::x11
