#pragma once

namespace seldial::platform::headless {

/// Installs ports for a process without a desktop: every registration is refused, no keyboard event
/// can be made, the pasteboard is always empty.
void installDesktop();

}  // namespace seldial::platform::headless
