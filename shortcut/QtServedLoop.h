#pragma once

#include <QSocketNotifier>

#include "platform/linux/MainLoop.h"

namespace seldial {

/// Serves a main loop from Qt's event loop, for as long as it lives. Made once there is an
/// application; the loop outlives it. Main thread only.
class QtServedLoop {
 public:
  explicit QtServedLoop(platform::linux_port::MainLoop& loop);

 private:
  QSocketNotifier notifier_;
};

}  // namespace seldial
