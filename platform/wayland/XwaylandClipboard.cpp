#include "platform/wayland/XwaylandClipboard.h"

#include <cstdlib>

#include "platform/Output.h"
#include "platform/x11/copy/FocusedWindow.h"

namespace seldial::platform::wayland {

bool focusedX11ProgramOwnsClipboard() {
  if (std::getenv("DISPLAY") == nullptr) {
    printError("seldial: DISPLAY is not set, so X11 programs cannot be told apart");
    return false;
  }
  // Not kept open: Xwayland runs as long as it has clients.
  const auto connection = x11::Connection::open(std::chrono::seconds(1));
  if (!connection) return false;
  auto* const xcb = connection->xcb();
  const auto owner = xcb_get_selection_owner(xcb, connection->atoms().clipboard);
  const auto reply = x11::freed(xcb_get_selection_owner_reply(xcb, owner, nullptr));
  const auto focused = x11::findFocusedWindow(*connection).window;
  return reply && reply->owner != XCB_WINDOW_NONE && focused != XCB_WINDOW_NONE &&
         x11::belongToSameProgram(*connection, focused, reply->owner);
}

}  // namespace seldial::platform::wayland
