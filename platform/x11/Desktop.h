// The Linux desktop on X11: pasteboard, keyboard events and hot keys over one connection.
#pragma once

#include <functional>
#include <memory>

#include "platform/linux/MainLoop.h"

namespace seldial::platform::x11 {

/// The connection to the X server and the ports that share it. Main thread only.
class Desktop {
 public:
  virtual ~Desktop() = default;

  /// Connects to the server that DISPLAY names, installs the ports and watches the connection.
  /// `connectionLost` is called once, from the loop, when the server goes away. Null when there is
  /// no server or it lacks an extension that the ports need (then one line on standard error says
  /// which; a DISPLAY that is not set is no trouble and says nothing).
  static std::unique_ptr<Desktop> connect(linux_port::MainLoop& loop,
                                          std::function<void()> connectionLost);
};

}  // namespace seldial::platform::x11
