#pragma once

#include <string>
#include <vector>

namespace seldial::platform::macos {

/// Installs every port of this desktop that is a C interface: main queue, application object,
/// keyboard events and hot key events. The pasteboard is Cocoa's. Main thread, before any other is
/// started. `arguments` is the command line, the program's own path first.
void installPorts(std::vector<std::string> arguments);

}  // namespace seldial::platform::macos
