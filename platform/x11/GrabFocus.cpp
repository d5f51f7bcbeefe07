#include "platform/x11/GrabFocus.h"

#include "platform/x11/Xcb.h"

namespace seldial::platform::x11 {

bool isKeyboardLostToGrab(const void* event) {
  const auto& generic = *static_cast<const xcb_generic_event_t*>(event);
  return kindOf(generic) == XCB_FOCUS_OUT &&
         as<xcb_focus_out_event_t>(generic).mode == XCB_NOTIFY_MODE_GRAB;
}

}  // namespace seldial::platform::x11
