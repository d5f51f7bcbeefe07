// The X11 desktop of a program with Qt windows.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

namespace seldial::platform::qt {

/// The desktop's ports, served from Qt's event loop: with it a Qt program has hot keys, and its
/// fields record them. One of these in a process; main thread only.
class Desktop {
 public:
  virtual ~Desktop() = default;

  /// Connects to the server that DISPLAY names and installs the ports. To be called before the
  /// QApplication is made, which ends the program where there is no server. Null then.
  /// `connectionLost` is called once, from the event loop, when the server goes away.
  static std::unique_ptr<Desktop> connect(std::function<void()> connectionLost);

  /// Serves the ports for as long as the result lives: it is made once there is a QApplication, and
  /// goes before that and before this object.
  [[nodiscard]] virtual std::unique_ptr<QObject> serve() = 0;
};

}  // namespace seldial::platform::qt
