#include "platform/wayland/Desktop.h"

#include <cstdlib>
#include <utility>

#include "platform/Output.h"
#include "platform/System.h"
#include "platform/linux/Application.h"
#include "platform/wayland/Clipboard.h"
#include "platform/wayland/CopyKeystroke.h"
#include "platform/wayland/FocusedProgram.h"
#include "platform/wayland/GnomeClipboard.h"
#include "platform/wayland/GnomeHotKeys.h"
#include "platform/wayland/KWinHotKeys.h"
#include "platform/wayland/PressHotKeys.h"
#include "platform/wayland/SwayHotKeys.h"
#include "platform/x11/Desktop.h"

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

/// A connection to a compositor, and what every session needs of it.
class Session {
 public:
  Session(std::shared_ptr<linux_port::MainLoop> mainLoop, std::unique_ptr<Display> open)
      : loop_(std::move(mainLoop)), display_(std::move(open)) {}

 private:
  const std::shared_ptr<linux_port::MainLoop> loop_;
  const std::unique_ptr<Display> display_;

 public:
  linux_port::MainLoop& loop = *loop_;
  Display& display = *display_;
  SeatKeymap keymap{display};
  DataControl data{display, loop};
};

struct SwaySession : Session {
  SwaySession(std::shared_ptr<linux_port::MainLoop> mainLoop, std::unique_ptr<Display> open,
              std::unique_ptr<SwayConnection> commands, std::unique_ptr<SwayConnection> events,
              const std::string& socketPath, const std::function<void()>& connectionLost)
      : Session(std::move(mainLoop), std::move(open)),
        hotKeys(
            std::move(commands), std::move(events), socketPath, loop,
            [this](std::uint32_t key) { return keymap.symbolsOf(key); }, connectionLost) {}

  VirtualKeyboard keyboard{display, keymap};
  SwayHotKeys hotKeys;
  WaylandClipboard clipboard{data, keyboard, [this] { return hotKeys.focusedProgram(); }};
};

/// A session of a compositor without hot keys for programs.
struct PressSession : Session {
  PressSession(std::shared_ptr<linux_port::MainLoop> mainLoop, std::unique_ptr<Display> open,
               const std::string& name)
      : Session(std::move(mainLoop), std::move(open)), hotKeys(loop, name) {}

  VirtualKeyboard keyboard{display, keymap};
  PressHotKeys hotKeys;
  WaylandClipboard clipboard{data, keyboard, [this] { return activeApplications(display); }};
};

/// A session of KWin, with Plasma or without.
struct KWinSession : Session {
  KWinSession(std::shared_ptr<linux_port::MainLoop> mainLoop, std::unique_ptr<Display> open,
              std::unique_ptr<Bus> openBus)
      : Session(std::move(mainLoop), std::move(open)), bus(std::move(openBus)) {
    shortcuts.listen([this](const std::string& action) { probe.pressed(action); },
                     [this](const std::string& action) { hotKeys.released(action); });
    keymap.setChangeHandler([this] { hotKeys.keymapChanged(); });
  }

  const std::unique_ptr<Bus> bus;
  GlobalAccel shortcuts{*bus};
  HotKeyClaims claims{sharedRuntimeDirectory(), GlobalAccel::kService};
  ModifierProbe probe{loop,   *bus,   shortcuts,
                      claims, keymap, [this](std::uint32_t key) { keyboard.tap(key); }};
  FakeKeyboard keyboard{display, keymap, [this] { return probe.waitUntilReleased(); }};
  PlasmaWindows windows{display};
  KWinHotKeys hotKeys{loop, shortcuts, claims, probe, keymap};
  WaylandClipboard clipboard{data, keyboard, [this] { return windows.activeApplications(); }};
};

struct GnomeSession {
  GnomeSession(std::shared_ptr<linux_port::MainLoop> mainLoop, std::unique_ptr<Display> open,
               std::unique_ptr<Bus> sessionBus)
      : loop(std::move(mainLoop)), display(std::move(open)), bus(std::move(sessionBus)) {}

  const std::shared_ptr<linux_port::MainLoop> loop;
  const std::unique_ptr<Display> display;
  const std::unique_ptr<Bus> bus;
  SeatKeymap keymap{*display};
  MutterRemote remote{*bus, *loop, x11::focusedProgramOwnsClipboard};
  GnomeHotKeys hotKeys{*loop, *bus, remote,
                       [this](std::uint32_t key) { return keymap.symbolName(key); }};
  GnomeClipboard clipboard{remote, runningPrograms};
};

/// The missing interfaces without which the port cannot work; empty if none is missing.
std::string missingFrom(const Display& display) {
  if (display.seat() == nullptr) return "a seat";
  if (display.dataControl() == nullptr) {
    return "the data control (ext_data_control_manager_v1 or zwlr_data_control_manager_v1), so no "
           "selection can be read";
  }
  if (display.isKWin() && (display.fakeInput() == nullptr || display.plasmaWindows() == nullptr)) {
    return "the permission for Seldial to type. Install Seldial's package, or a file "
           "~/.local/share/applications/org.seldial.Seldial.desktop with the lines Exec=" +
           executablePath() +
           " and X-KDE-Wayland-Interfaces=org_kde_kwin_fake_input,"
           "org_kde_plasma_window_management, and start Seldial again";
  }
  if (!display.isKWin() && display.virtualKeyboards() == nullptr) {
    return "virtual keyboards (zwp_virtual_keyboard_manager_v1), so no application can be made to "
           "copy";
  }
  return {};
}

std::string sessionName() {
  auto name = environment("XDG_CURRENT_DESKTOP");
  return name.empty() ? environment("WAYLAND_DISPLAY") : name;
}

std::string lacks(const std::string& missing) {
  return "the Wayland session " + sessionName() + " lacks " + missing;
}

DesktopPorts makeRefusingPorts(const std::string& reason) {
  printError("seldial: " + reason + "; there will be no hot key");
  return linux_port::noDesktop();
}

/// The ports of a session, which lives as long as one of them.
template <class SomeSession>
DesktopPorts portsOf(const std::shared_ptr<SomeSession>& session) {
  return {{session, &session->hotKeys}, {session, &session->clipboard}, [session] {
            session->hotKeys.unregisterAll();
          }};
}

DesktopPorts connectToKWin(const std::shared_ptr<linux_port::MainLoop>& loop,
                           std::unique_ptr<Display> display,
                           const std::function<void()>& connectionLost) {
  auto bus = Bus::open(*loop, connectionLost);
  if (!bus || !bus->hasOwner(GlobalAccel::kService)) {
    return makeRefusingPorts(lacks("the service for global shortcuts (" +
                                   std::string(GlobalAccel::kService) + ") on the session bus"));
  }
  return portsOf(std::make_shared<KWinSession>(loop, std::move(display), std::move(bus)));
}

DesktopPorts connectToGnome(const std::shared_ptr<linux_port::MainLoop>& loop,
                            std::unique_ptr<Display> display, std::unique_ptr<Bus> bus) {
  if (!PortalShortcuts::isOffered(*bus)) {
    return makeRefusingPorts(
        "GNOME supports hot keys of programs from version 48 on, with xdg-desktop-portal and "
        "xdg-desktop-portal-gnome");
  }
  return portsOf(std::make_shared<GnomeSession>(loop, std::move(display), std::move(bus)));
}

}  // namespace

DesktopPorts connect(int socket, const std::shared_ptr<linux_port::MainLoop>& loop,
                     std::function<void()> connectionLost) {
  const auto lost = once(std::move(connectionLost));
  auto display = std::make_unique<Display>(socket, *loop, lost);
  if (!display->answered()) {
    return makeRefusingPorts("the Wayland session " + sessionName() + " does not answer");
  }
  const std::string missing = missingFrom(*display);
  if (!missing.empty()) {
    // Mutter offers no data control.
    auto bus = display->seat() != nullptr ? Bus::open(*loop, lost) : nullptr;
    if (bus && MutterRemote::isOffered(*bus)) {
      return connectToGnome(loop, std::move(display), std::move(bus));
    }
    return makeRefusingPorts(lacks(missing));
  }
  if (display->isKWin()) return connectToKWin(loop, std::move(display), lost);
  const std::string path = environment("SWAYSOCK");
  auto commands = SwayConnection::open(path);
  auto events = SwayConnection::open(path);
  if (!commands || !events) {
    return portsOf(std::make_shared<PressSession>(loop, std::move(display), sessionName()));
  }
  return portsOf(std::make_shared<SwaySession>(loop, std::move(display), std::move(commands),
                                               std::move(events), path, lost));
}

}  // namespace seldial::platform::wayland
