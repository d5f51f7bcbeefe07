// The window that receives typed keys, and which windows belong to the same program.
#pragma once

#include <string>
#include <vector>

#include "platform/x11/Connection.h"

namespace seldial::platform::x11 {

/// The focused window or, if it has no WM_CLASS, its nearest ancestor that has one.
struct FocusedWindow {
  xcb_window_t window = XCB_WINDOW_NONE;  ///< none if no window receives keys
  std::vector<std::string> names;         ///< its WM_CLASS; empty if no ancestor has one
};

/// Takes one round trip, and one more for each window up to the one with the names.
FocusedWindow findFocusedWindow(const Connection& connection);

/// Whether two windows belong to the same X client or, because a program may have several
/// connections to the server, to the same process on this machine. At most three round trips.
bool belongToSameProgram(const Connection& connection, xcb_window_t one, xcb_window_t other);

}  // namespace seldial::platform::x11
