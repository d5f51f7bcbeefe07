#include "platform/x11/Session.h"

#include <utility>

#include "platform/x11/Xcb.h"

namespace seldial::platform::x11 {

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
  return std::make_shared<Session>(std::move(connection), std::move(loop),
                                   std::move(connectionLost));
}

std::shared_ptr<HotKeyEvents> hotKeyEvents(const std::shared_ptr<Session>& session) {
  return {session, &session->hotKeys};
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

}  // namespace seldial::platform::x11
