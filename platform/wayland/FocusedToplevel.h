// Which program has the focus, where the compositor lists its windows for taskbars.
#pragma once

#include <string>
#include <vector>

#include "platform/wayland/Display.h"

namespace seldial::platform::wayland {

/// The application ids of the active windows; none when the compositor does not tell. Takes two
/// round trips. The list is requested for each call, so that changes wake nobody up in between.
[[nodiscard]] std::vector<std::string> activeApplications(Display& display);

}  // namespace seldial::platform::wayland
