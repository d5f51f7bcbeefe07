// The desktop for a program with its own main loop: poll, GLib, Qt or any other.
#pragma once

#include <functional>
#include <memory>

#include "platform/Keyboard.h"

namespace seldial::platform {

class HotKeyEvents;

/// A connection to the desktop that the program's own loop serves. It handles no signals and
/// changes no settings of the process. It starts one thread, which connects and then ends. At most
/// one per process. Use it on one thread only; the tasks of hot keys run on that thread, too.
///
/// The loop calls dispatch() before each wait and waits until descriptor() is readable.
class ServedDesktop {
 public:
  virtual ~ServedDesktop() = default;

  /// Connects to the desktop of this session; blocks until its display server has answered. Null if
  /// there is none. `connectionLost` is called once, from dispatch(), when the server goes away.
  /// Throws std::system_error when the system has no descriptor left.
  static std::unique_ptr<ServedDesktop> connect(std::function<void()> connectionLost);

  /// The port for QKHotKeyCenter::setHotKeyEvents().
  [[nodiscard]] virtual std::shared_ptr<HotKeyEvents> hotKeyEvents() = 0;

  /// The ports for fields in which hot keys are shown and recorded.
  [[nodiscard]] virtual KeyboardPorts keyboard() = 0;

  /// Readable when dispatch() has something to do. The object owns it; do not read from it.
  [[nodiscard]] virtual int descriptor() const = 0;

  /// Handles everything that is pending, and returns without waiting.
  virtual void dispatch() = 0;
};

}  // namespace seldial::platform
