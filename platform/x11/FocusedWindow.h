// The window that receives what is typed now, and whose it is.
#pragma once

#include <string>
#include <vector>

#include "platform/x11/Connection.h"

namespace seldial::platform::x11 {

struct FocusedWindow {
  xcb_window_t window = XCB_WINDOW_NONE;  ///< none when nothing that is typed arrives anywhere
  std::vector<std::string> names;         ///< WM_CLASS, of the window or the nearest one around it
};

/// A round trip, and one for every window from there to the one with the names.
FocusedWindow findFocusedWindow(const Connection& connection);

}  // namespace seldial::platform::x11
