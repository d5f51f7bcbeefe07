#pragma once

namespace seldial::tests {

/// How often this process has requested a whole keymap from an X server, by xkbcommon. Link the
/// program with KeymapRequests.cpp, which stands before xkbcommon's own function.
[[nodiscard]] int keymapRequests();

}  // namespace seldial::tests
