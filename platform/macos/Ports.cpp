#include "platform/macos/Ports.h"

#include <memory>
#include <utility>

#include "platform/macos/Application.h"
#include "platform/macos/Clipboard.h"
#include "platform/macos/HotKeyEvents.h"
#include "platform/macos/MainQueue.h"

namespace seldial::platform::macos {

Ports makePorts(std::vector<std::string> arguments) {
  const auto connectDesktop = [] {
    return DesktopPorts{std::make_shared<CarbonHotKeyEvents>(), std::make_shared<MacClipboard>()};
  };
  return {std::make_shared<MacApplication>(std::move(arguments)),
          std::make_shared<DispatchMainQueue>(), connectDesktop};
}

}  // namespace seldial::platform::macos
