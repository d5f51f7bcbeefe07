#include "platform/x11/copy/FocusedWindow.h"

#include <unistd.h>
#include <xcb/res.h>

#include <array>
#include <climits>
#include <cstdlib>
#include <sstream>

#include "platform/Output.h"
#include "platform/x11/Desktop.h"

namespace seldial::platform::x11 {
namespace {

/// The longest WM_CLASS that is read, in units of four bytes.
constexpr std::uint32_t kMaxNameLength = 256;

/// The window that receives keys if no window has the focus: the innermost one under the pointer.
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

/// The names in a WM_CLASS property, each of which ends with a NUL byte.
std::vector<std::string> namesIn(const xcb_get_property_reply_t& property) {
  std::istringstream text({static_cast<const char*>(xcb_get_property_value(&property)),
                           static_cast<std::size_t>(xcb_get_property_value_length(&property))});
  std::vector<std::string> names;
  for (std::string name; std::getline(text, name, '\0');) names.push_back(name);
  return names;
}

/// Whether the program runs on another machine. The process that the X server knows then only
/// forwards connections, possibly for several programs.
bool isRemote(const Connection& connection, xcb_window_t window) {
  auto* const xcb = connection.xcb();
  const auto cookie = xcb_get_property(xcb, 0, window, XCB_ATOM_WM_CLIENT_MACHINE,
                                       XCB_GET_PROPERTY_TYPE_ANY, 0, kMaxNameLength);
  const auto reply = freed(xcb_get_property_reply(xcb, cookie, nullptr));
  std::array<char, HOST_NAME_MAX + 1> ours{};
  if (!reply || reply->type == XCB_ATOM_NONE || gethostname(ours.data(), HOST_NAME_MAX) != 0) {
    return false;
  }
  const auto names = namesIn(*reply);
  return !names.empty() && names.front() != ours.data();
}

/// The process IDs of the clients that own the windows, as far as the server knows them.
std::vector<std::uint32_t> processesOf(const Connection& connection,
                                       const std::array<xcb_window_t, 2>& windows) {
  auto* const xcb = connection.xcb();
  const auto* const extension = xcb_get_extension_data(xcb, &xcb_res_id);
  if (extension == nullptr || extension->present == 0) return {};
  constexpr std::uint32_t kProcess = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID;
  const std::array specs{xcb_res_client_id_spec_t{windows[0], kProcess},
                         xcb_res_client_id_spec_t{windows[1], kProcess}};
  const auto cookie = xcb_res_query_client_ids(xcb, specs.size(), specs.data());
  const auto reply = freed(xcb_res_query_client_ids_reply(xcb, cookie, nullptr));
  std::vector<std::uint32_t> processes;
  if (!reply) return processes;
  for (auto it = xcb_res_query_client_ids_ids_iterator(reply.get()); it.rem > 0;
       xcb_res_client_id_value_next(&it)) {
    if (it.data->length >= sizeof(std::uint32_t)) {
      processes.push_back(*xcb_res_client_id_value_value(it.data));
    }
  }
  return processes;
}

}  // namespace

FocusedWindow findFocusedWindow(const Connection& connection) {
  auto* const xcb = connection.xcb();
  FocusedWindow result;
  for (auto window = inputWindow(connection); window != XCB_WINDOW_NONE && result.names.empty();) {
    result.window = window;
    const auto property =
        xcb_get_property(xcb, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, kMaxNameLength);
    const auto tree = xcb_query_tree(xcb, window);
    const auto names = freed(xcb_get_property_reply(xcb, property, nullptr));
    const auto around = freed(xcb_query_tree_reply(xcb, tree, nullptr));
    if (names) result.names = namesIn(*names);
    window = around ? around->parent : xcb_window_t{XCB_WINDOW_NONE};
  }
  return result;
}

bool belongToSameProgram(const Connection& connection, xcb_window_t one, xcb_window_t other) {
  if (connection.clientOf(one) == connection.clientOf(other)) return true;
  const auto processes = processesOf(connection, {one, other});
  return processes.size() == 2 && processes[0] == processes[1] && !isRemote(connection, one);
}

bool focusedProgramOwnsClipboard() {
  const std::string consequence = "X11 programs cannot be told apart";
  const char* const display = std::getenv("DISPLAY");
  if (display == nullptr || *display == '\0') {
    printError("seldial: DISPLAY is not set, so " + consequence);
    return false;
  }
  // Not kept open: Xwayland runs as long as it has clients.
  const auto connection = Connection::open(std::chrono::seconds(1), consequence);
  if (!connection) return false;
  auto* const xcb = connection->xcb();
  const auto cookie = xcb_get_selection_owner(xcb, connection->atoms().clipboard);
  const auto reply = freed(xcb_get_selection_owner_reply(xcb, cookie, nullptr));
  const auto focused = findFocusedWindow(*connection).window;
  return reply && reply->owner != XCB_WINDOW_NONE && focused != XCB_WINDOW_NONE &&
         belongToSameProgram(*connection, focused, reply->owner);
}

}  // namespace seldial::platform::x11
