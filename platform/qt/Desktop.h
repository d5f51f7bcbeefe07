// The X11 desktop of a program with Qt windows.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <utility>

#include "platform/ServedDesktop.h"

namespace seldial::platform::qt {

/// The ports of the desktop, served from Qt's event loop. A Qt program needs it for hot keys and
/// for recording them in its fields. At most one per process; main thread only.
class Desktop {
 public:
  /// Connects to the server that DISPLAY names; null if there is none. Call it before you create
  /// the QApplication, which ends the program if there is no server. `connectionLost` is called
  /// once, from the event loop, when the server goes away.
  static std::unique_ptr<Desktop> connect(std::function<void()> connectionLost);

  /// The port for QKHotKeyCenter::setHotKeyEvents().
  [[nodiscard]] std::shared_ptr<HotKeyEvents> hotKeyEvents() { return served_->hotKeyEvents(); }

  /// The ports for fields in which hot keys are shown and recorded.
  [[nodiscard]] KeyboardPorts keyboard() { return served_->keyboard(); }

  /// Serves the ports for as long as the result lives. Create the result after the QApplication;
  /// destroy it before the QApplication and before this object.
  [[nodiscard]] std::unique_ptr<QObject> serve();

 private:
  explicit Desktop(std::unique_ptr<ServedDesktop> served) : served_(std::move(served)) {}

  const std::unique_ptr<ServedDesktop> served_;
};

}  // namespace seldial::platform::qt
