#pragma once

#include <functional>
#include <memory>

#include "platform/x11/Desktop.h"
#include "platform/x11/HotKeyGrabs.h"
#include "platform/x11/Keyboards.h"

namespace seldial::platform::x11 {

/// The connection to the X server and the objects that share it. Main thread only.
class Session {
 public:
  Session(std::unique_ptr<Connection> open, std::shared_ptr<linux_port::MainLoop> mainLoop,
          std::function<void()> connectionLost);

 private:
  const std::shared_ptr<linux_port::MainLoop> loop_;
  const std::unique_ptr<Connection> connection_;

 public:
  linux_port::MainLoop& loop = *loop_;
  Connection& connection = *connection_;
  EventPump pump;
  Keyboards keyboards;
  HotKeyGrabs hotKeys;
  RecordedKeys recordedKeys;
};

}  // namespace seldial::platform::x11
