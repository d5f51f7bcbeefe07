#include "platform/wayland/Desktop.h"

#include <cstdlib>
#include <utility>

#include "platform/Output.h"
#include "platform/linux/NoDesktop.h"
#include "platform/wayland/Clipboard.h"
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

/// A connection to a compositor with everything that copying needs, and the hot keys of sway.
class SwaySession {
 public:
  SwaySession(std::shared_ptr<linux_port::MainLoop> loop, std::unique_ptr<Display> display,
              std::unique_ptr<SwayConnection> commands, std::unique_ptr<SwayConnection> events,
              const std::string& socketPath, const std::function<void()>& connectionLost)
      : loop_(std::move(loop)),
        display_(std::move(display)),
        hotKeys(
            std::move(commands), std::move(events), socketPath, *loop_,
            [this](std::uint32_t key, const std::string& symbol) {
              return keyboard_.hasSymbol(key, symbol);
            },
            connectionLost),
        clipboard(data_, keyboard_, [this] { return hotKeys.focusedProgram(); }) {
    display_->synchronise();  // tells that the seat has a keyboard
    display_->synchronise();  // tells its keymap
    keyboard_.useKeymapOfSeat();
  }

 private:
  const std::shared_ptr<linux_port::MainLoop> loop_;
  const std::unique_ptr<Display> display_;
  DataControl data_{*display_};
  VirtualKeyboard keyboard_{*display_};

 public:
  SwayHotKeys hotKeys;
  WaylandClipboard clipboard;
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
    printError("seldial: the Wayland session " + sessionName() +
               " gives no program a hot key, as sway does at SWAYSOCK; there will be no hot key");
    return refuseEverything();
  }
  const auto session = std::make_shared<SwaySession>(loop, std::move(display), std::move(commands),
                                                     std::move(events), path, lost);
  return {{session, &session->hotKeys}, {session, &session->clipboard}, [session] {
            session->hotKeys.unregisterAll();
          }};
}

}  // namespace seldial::platform::wayland
