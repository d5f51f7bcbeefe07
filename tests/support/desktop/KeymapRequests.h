#pragma once

namespace seldial::tests {

/// How often this process has requested a whole keymap from an X server with xkbcommon. Link the
/// program with KeymapRequests.cpp, which replaces xkbcommon's function.
[[nodiscard]] int keymapRequests();

}  // namespace seldial::tests
