#pragma once

#include <memory>

#include "platform/Pasteboard.h"

namespace seldial::platform::macos {

/// The general pasteboard of the user's session.
std::shared_ptr<Pasteboard> makeGeneralPasteboard();

}  // namespace seldial::platform::macos
