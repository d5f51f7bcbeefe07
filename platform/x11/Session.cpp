#include "platform/x11/Session.h"

#include <xcb/xinput.h>

#include <string_view>
#include <utility>

#include "platform/Output.h"
#include "platform/x11/Xcb.h"

namespace seldial::platform::x11 {
namespace {

/// Xwayland has its own extension from version 23.1 on; older versions are recognised by their
/// devices.
bool isXwayland(const Connection& connection) {
  constexpr std::string_view kExtension = "XWAYLAND";
  constexpr std::string_view kDevices = "xwayland-";
  auto* const xcb = connection.xcb();
  const auto extension = xcb_query_extension(xcb, kExtension.size(), kExtension.data());
  const auto devices = xcb_input_xi_query_device(xcb, XCB_INPUT_DEVICE_ALL);
  const auto found = freed(xcb_query_extension_reply(xcb, extension, nullptr));
  const auto list = freed(xcb_input_xi_query_device_reply(xcb, devices, nullptr));
  if (found && found->present != 0) return true;
  if (!list) return false;
  for (auto it = xcb_input_xi_query_device_infos_iterator(list.get()); it.rem > 0;
       xcb_input_xi_device_info_next(&it)) {
    const std::string_view name(xcb_input_xi_device_info_name(it.data), it.data->name_len);
    if (name.substr(0, kDevices.size()) == kDevices) return true;
  }
  return false;
}

}  // namespace

Session::Session(std::unique_ptr<Connection> open, std::shared_ptr<linux_port::MainLoop> mainLoop,
                 std::function<void()> connectionLost)
    : loop_(std::move(mainLoop)),
      connection_(std::move(open)),
      pump(connection, *loop_, std::move(connectionLost)),
      keyboards(connection, pump),
      hotKeys(connection, pump, *loop_, keyboards),
      recordedKeys(keyboards) {}

std::shared_ptr<Session> connect(std::shared_ptr<linux_port::MainLoop> loop,
                                 std::function<void()> connectionLost) {
  auto connection = Connection::open();
  if (!connection) return nullptr;
  if (isXwayland(*connection)) {
    printError(
        "seldial: the X server is Xwayland; the hot key works in windows of X11 applications only, "
        "not in those of Wayland applications");
  }
  return std::make_shared<Session>(std::move(connection), std::move(loop),
                                   std::move(connectionLost));
}

std::shared_ptr<HotKeyEvents> hotKeyEvents(const std::shared_ptr<Session>& session) {
  return {session, &session->hotKeys};
}

bool typeHotKey(HotKeyEvents& hotKeys, std::uint16_t keyCode, std::uint64_t modifierFlags) {
  return static_cast<HotKeyGrabs&>(hotKeys).type(keyCode, modifierFlags);
}

std::shared_ptr<RecordingKeyboard> recordingKeyboard(const std::shared_ptr<Session>& session) {
  return {session, &session->recordedKeys};
}

bool isFocusChangeOfGrab(const void* event) {
  const auto& generic = *static_cast<const xcb_generic_event_t*>(event);
  if (kindOf(generic) != XCB_FOCUS_IN && kindOf(generic) != XCB_FOCUS_OUT) return false;
  const auto mode = as<xcb_focus_in_event_t>(generic).mode;
  return mode == XCB_NOTIFY_MODE_GRAB || mode == XCB_NOTIFY_MODE_UNGRAB;
}

bool isFocusIn(std::uint32_t window, const void* event) {
  const auto& generic = *static_cast<const xcb_generic_event_t*>(event);
  if (kindOf(generic) != XCB_FOCUS_IN || isFocusChangeOfGrab(event)) return false;
  const auto& focus = as<xcb_focus_in_event_t>(generic);
  return focus.event == window && focus.detail < XCB_NOTIFY_DETAIL_POINTER;
}

}  // namespace seldial::platform::x11
