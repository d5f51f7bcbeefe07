#pragma once

#include <string>
#include <vector>

#include "platform/Ports.h"

namespace seldial::platform::macos {

/// The ports of this desktop. Main thread. `arguments` is the command line, the path of the program
/// first.
Ports makePorts(std::vector<std::string> arguments);

}  // namespace seldial::platform::macos
