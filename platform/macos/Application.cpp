#include "platform/macos/Application.h"

#include <unistd.h>

#include <utility>

#include "platform/macos/Cocoa.h"

namespace seldial::platform::macos {

MacApplication::MacApplication(std::vector<std::string> arguments)
    : arguments_(std::move(arguments)) {}

void MacApplication::terminate(ApplicationDelegate* sender) {
  terminateSharedApplication(sender);
}

void MacApplication::usleep(std::uint32_t microseconds) {
  ::usleep(microseconds);
}

}  // namespace seldial::platform::macos
