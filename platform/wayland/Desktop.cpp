#include "platform/wayland/Desktop.h"

#include <cstdlib>
#include <utility>

#include "platform/Output.h"
#include "platform/linux/NoDesktop.h"
#include "platform/wayland/Clipboard.h"
#include "platform/wayland/FocusedToplevel.h"
#include "platform/wayland/PressHotKeys.h"
#include "platform/wayland/SwayHotKeys.h"

namespace seldial::platform::wayland {
namespace {

std::string environment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr ? value : "";
}

/// Calls a function at most once, whoever calls first.
std::function<void()> once(std::function<void()> function) {
  return [function = std::make_shared<std::function<void()>>(std::move(function))] {
    if (auto call = std::exchange(*function, nullptr)) call();
  };
}

/// A connection to a compositor, and everything that copying needs of it.
class Session {
 public:
  Session(std::shared_ptr<linux_port::MainLoop> mainLoop, std::unique_ptr<Display> open)
      : loop_(std::move(mainLoop)), display_(std::move(open)) {
    keyboard.useKeymapOfSeat();
  }

 private:
  const std::shared_ptr<linux_port::MainLoop> loop_;
  const std::unique_ptr<Display> display_;

 public:
  linux_port::MainLoop& loop = *loop_;
  Display& display = *display_;
  DataControl data{display};
  SeatKeymap keymap{display};
  VirtualKeyboard keyboard{display, keymap};
};

/// A session of sway.
struct SwaySession : Session {
  SwaySession(std::shared_ptr<linux_port::MainLoop> mainLoop, std::unique_ptr<Display> open,
              std::unique_ptr<SwayConnection> commands, std::unique_ptr<SwayConnection> events,
              const std::string& socketPath, const std::function<void()>& connectionLost)
      : Session(std::move(mainLoop), std::move(open)),
        hotKeys(
            std::move(commands), std::move(events), socketPath, loop,
            [this](std::uint32_t key) { return keymap.symbolsOf(key); }, connectionLost) {}

  SwayHotKeys hotKeys;
  WaylandClipboard clipboard{data, keyboard, [this] { return hotKeys.focusedProgram(); }};
};

/// A session of a compositor that gives programs no hot key.
struct PressSession : Session {
  PressSession(std::shared_ptr<linux_port::MainLoop> mainLoop, std::unique_ptr<Display> open,
               const std::string& name)
      : Session(std::move(mainLoop), std::move(open)), hotKeys(loop, name) {}

  PressHotKeys hotKeys;
  WaylandClipboard clipboard{data, keyboard, [this] { return activeApplications(display); }};
};

/// What a program can do nothing without; null when nothing is missing.
const char* missingFrom(const Display& display) {
  if (display.seat() == nullptr) return "a seat";
  if (display.dataControl() == nullptr) {
    return "the data control (zwlr_data_control_manager_v1), so no selection can be read";
  }
  if (display.virtualKeyboards() == nullptr) {
    return "virtual keyboards (zwp_virtual_keyboard_manager_v1), so no application can be made to "
           "copy";
  }
  return nullptr;
}

std::string sessionName() {
  auto name = environment("XDG_CURRENT_DESKTOP");
  return name.empty() ? environment("WAYLAND_DISPLAY") : name;
}

DesktopPorts refuseEverything() {
  return {std::make_shared<linux_port::NoHotKeyEvents>(),
          std::make_shared<linux_port::NoClipboard>()};
}

}  // namespace

DesktopPorts connect(int socket, const std::shared_ptr<linux_port::MainLoop>& loop,
                     std::function<void()> connectionLost) {
  const auto lost = once(std::move(connectionLost));
  auto display = std::make_unique<Display>(socket, *loop, lost);
  if (const char* const missing = missingFrom(*display)) {
    printError("seldial: the Wayland session " + sessionName() + " lacks " + missing +
               "; there will be no hot key");
    return refuseEverything();
  }
  const std::string path = environment("SWAYSOCK");
  auto commands = SwayConnection::open(path);
  auto events = SwayConnection::open(path);
  if (!commands || !events) {
    const auto session = std::make_shared<PressSession>(loop, std::move(display), sessionName());
    return {{session, &session->hotKeys}, {session, &session->clipboard}, [session] {
              session->hotKeys.stopListening();
            }};
  }
  const auto session = std::make_shared<SwaySession>(loop, std::move(display), std::move(commands),
                                                     std::move(events), path, lost);
  return {{session, &session->hotKeys}, {session, &session->clipboard}, [session] {
            session->hotKeys.unregisterAll();
          }};
}

}  // namespace seldial::platform::wayland
