#include "platform/x11/FocusedWindow.h"

#include <sstream>

namespace seldial::platform::x11 {
namespace {

constexpr std::uint32_t kLongestName = 256;  // in units of four bytes

/// Typed keys go to the innermost window under the pointer when no window has the focus.
xcb_window_t windowUnderPointer(const Connection& connection) {
  auto* const xcb = connection.xcb();
  xcb_window_t window = connection.root();
  for (;;) {
    const auto reply = freed(xcb_query_pointer_reply(xcb, xcb_query_pointer(xcb, window), nullptr));
    if (!reply || reply->child == XCB_WINDOW_NONE) return window;
    window = reply->child;
  }
}

xcb_window_t inputWindow(const Connection& connection) {
  auto* const xcb = connection.xcb();
  const auto reply = freed(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
  if (!reply || reply->focus == XCB_INPUT_FOCUS_NONE) return XCB_WINDOW_NONE;
  const bool followsPointer =
      reply->focus == XCB_INPUT_FOCUS_POINTER_ROOT || reply->focus == connection.root();
  return followsPointer ? windowUnderPointer(connection) : reply->focus;
}

/// The names in a WM_CLASS property: each ends with a zero byte.
std::vector<std::string> namesIn(const xcb_get_property_reply_t& property) {
  std::istringstream text({static_cast<const char*>(xcb_get_property_value(&property)),
                           static_cast<std::size_t>(xcb_get_property_value_length(&property))});
  std::vector<std::string> names;
  for (std::string name; std::getline(text, name, '\0');) names.push_back(name);
  return names;
}

}  // namespace

FocusedWindow findFocusedWindow(const Connection& connection) {
  auto* const xcb = connection.xcb();
  FocusedWindow result{inputWindow(connection), {}};
  for (auto window = result.window; window != XCB_WINDOW_NONE && result.names.empty();) {
    const auto property =
        xcb_get_property(xcb, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, kLongestName);
    const auto tree = xcb_query_tree(xcb, window);
    const auto names = freed(xcb_get_property_reply(xcb, property, nullptr));
    const auto around = freed(xcb_query_tree_reply(xcb, tree, nullptr));
    if (names) result.names = namesIn(*names);
    window = around ? around->parent : xcb_window_t{XCB_WINDOW_NONE};
  }
  return result;
}

}  // namespace seldial::platform::x11
