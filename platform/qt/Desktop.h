// The X11 desktop of a program with Qt windows.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "platform/Keyboard.h"

namespace seldial::platform {
class HotKeyEvents;
namespace x11 {
class Session;
}
}  // namespace seldial::platform

namespace seldial::platform::qt {

/// The ports of the desktop, served from Qt's event loop. A Qt program needs it to have hot keys
/// and to record them in its fields. One in a process; main thread only.
class Desktop {
 public:
  virtual ~Desktop() = default;

  /// Connects to the server that DISPLAY names; null where there is none. Call it before making the
  /// QApplication, which ends the program where there is no server. `connectionLost` is called
  /// once, from the event loop, when the server goes away.
  static std::unique_ptr<Desktop> connect(std::function<void()> connectionLost);

  /// The port for QKHotKeyCenter::setHotKeyEvents().
  [[nodiscard]] virtual std::shared_ptr<HotKeyEvents> hotKeyEvents() = 0;

  /// The ports for fields in which hot keys are shown and recorded.
  [[nodiscard]] virtual KeyboardPorts keyboard() = 0;

  /// What the desktop is connected by.
  [[nodiscard]] virtual std::shared_ptr<x11::Session> session() = 0;

  /// Serves the ports for as long as the result lives. Make it after the QApplication; destroy it
  /// before that and before this object.
  [[nodiscard]] virtual std::unique_ptr<QObject> serve() = 0;
};

}  // namespace seldial::platform::qt
