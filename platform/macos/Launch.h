#pragma once

#include <string>
#include <vector>

#include "platform/Application.h"

namespace seldial::platform::macos {

/// What applicationMain() keeps for the objects that AppKit makes by itself. Main thread only.
struct Launch {
  std::vector<std::string> arguments;
  MakeApplicationDelegate makeDelegate;
};

/// The one of this process, empty before applicationMain().
Launch& launch();

}  // namespace seldial::platform::macos
