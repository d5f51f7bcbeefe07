#include "platform/macos/Ports.h"

#include <memory>
#include <utility>

#include "platform/Installed.h"
#include "platform/macos/Application.h"
#include "platform/macos/HotKeyEvents.h"
#include "platform/macos/KeyboardEvents.h"
#include "platform/macos/MainQueue.h"

namespace seldial::platform::macos {

void installPorts(std::vector<std::string> arguments) {
  installed<MainQueue>() = std::make_shared<DispatchMainQueue>();
  installed<Application>() = std::make_shared<MacApplication>(std::move(arguments));
  installed<KeyboardEvents>() = std::make_shared<CoreGraphicsKeyboardEvents>();
  installed<HotKeyEvents>() = std::make_shared<CarbonHotKeyEvents>();
}

}  // namespace seldial::platform::macos
