#include "tests/support/desktop/Windows.h"

#include <xcb/xtest.h>

#include <functional>
#include <stdexcept>

#include "tests/support/Waiting.h"
#include "tests/support/desktop/Xcb.h"

namespace seldial::tests {
namespace {

void waitUntil(const std::function<bool()>& condition, const std::string& what) {
  if (!tests::eventually(condition)) throw std::runtime_error("no " + what);
}

}  // namespace

Windows::Windows(const std::string& display) : connection_(connectToServer(display)) {}

Windows::~Windows() {
  xcb_disconnect(connection_);
}

void Windows::waitForManager() const {
  const auto property = atom(connection_, "_NET_SUPPORTING_WM_CHECK");
  waitUntil([&] { return hasProperty(rootOf(connection_), property); }, "window manager");
  waitUntilItManagesWindows();
}

/// A window manager that has just started may miss a window that is mapped at that moment, and
/// never manage it.
void Windows::waitUntilItManagesWindows() const {
  const auto window = xcb_generate_id(connection_);
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, rootOf(connection_), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
  const auto state = atom(connection_, "WM_STATE");
  int looks = 0;
  waitUntil(
      [&] {
        if (looks++ % 50 == 0) {
          xcb_unmap_window(connection_, window);
          xcb_map_window(connection_, window);
        }
        return hasProperty(window, state);
      },
      "window manager that sees to a window");
  xcb_destroy_window(connection_, window);
  synchronise(connection_);
}

bool Windows::hasProperty(xcb_window_t window, xcb_atom_t property) const {
  const auto cookie = xcb_get_property(connection_, 0, window, property, XCB_ATOM_ANY, 0, 1);
  const auto reply = freed(xcb_get_property_reply(connection_, cookie, nullptr));
  return reply && reply->type != XCB_ATOM_NONE;
}

xcb_window_t Windows::waitForFocus(const std::string& name) const {
  xcb_window_t found = XCB_WINDOW_NONE;
  waitUntil(
      [&] {
        for (auto window = focusedWindow(); window != XCB_WINDOW_NONE; window = parentOf(window)) {
          if (hasName(window, name)) found = window;
        }
        return found != XCB_WINDOW_NONE;
      },
      "focus in a window named " + name);
  return found;
}

void Windows::waitUntilActive(xcb_window_t window) const {
  const auto property = atom(connection_, "_NET_ACTIVE_WINDOW");
  waitUntil(
      [&] {
        const auto cookie =
            xcb_get_property(connection_, 0, rootOf(connection_), property, XCB_ATOM_WINDOW, 0, 1);
        const auto reply = freed(xcb_get_property_reply(connection_, cookie, nullptr));
        return reply && xcb_get_property_value_length(reply.get()) == sizeof window &&
               *static_cast<xcb_window_t*>(xcb_get_property_value(reply.get())) == window;
      },
      "active window");
}

void Windows::waitForOwner(const std::string& selection) const {
  const auto name = atom(connection_, selection);
  waitUntil(
      [&] {
        const auto cookie = xcb_get_selection_owner(connection_, name);
        const auto reply = freed(xcb_get_selection_owner_reply(connection_, cookie, nullptr));
        return reply && reply->owner != XCB_WINDOW_NONE;
      },
      "owner of " + selection);
}

void Windows::click(xcb_window_t window, std::int16_t x, std::int16_t y, int times) const {
  xcb_warp_pointer(connection_, XCB_WINDOW_NONE, window, 0, 0, 0, 0, x, y);
  for (int i = 0; i < times; ++i) {
    xcb_test_fake_input(connection_, XCB_BUTTON_PRESS, 1, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0,
                        0);
    xcb_test_fake_input(connection_, XCB_BUTTON_RELEASE, 1, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0,
                        0);
  }
  synchronise(connection_);
}

xcb_window_t Windows::focusedWindow() const {
  const auto cookie = xcb_get_input_focus(connection_);
  const auto reply = freed(xcb_get_input_focus_reply(connection_, cookie, nullptr));
  return reply && reply->focus > XCB_INPUT_FOCUS_POINTER_ROOT ? reply->focus
                                                              : xcb_window_t{XCB_WINDOW_NONE};
}

bool Windows::hasName(xcb_window_t window, const std::string& name) const {
  const auto cookie =
      xcb_get_property(connection_, 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256);
  const auto reply = freed(xcb_get_property_reply(connection_, cookie, nullptr));
  if (!reply) return false;
  const std::string names(static_cast<const char*>(xcb_get_property_value(reply.get())),
                          static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
  return ('\0' + names).find('\0' + name + '\0') != std::string::npos;
}

xcb_window_t Windows::parentOf(xcb_window_t window) const {
  const auto reply =
      freed(xcb_query_tree_reply(connection_, xcb_query_tree(connection_, window), nullptr));
  return reply ? reply->parent : xcb_window_t{XCB_WINDOW_NONE};
}

WindowManager::WindowManager(const std::string& display)
    : process_({"openbox", "--sm-disable"}, {"DISPLAY=" + display},
               "sudo apt-get install openbox") {
  Windows(display).waitForManager();
}

}  // namespace seldial::tests
