#pragma once

#include <cstddef>

namespace seldial::platform {

/// Fills `bytes` with random numbers of the system's that nobody can guess, straight from it: a
/// copy of the process made by fork() draws others. At most 256 bytes. False: it has none to give.
/// Any thread.
[[nodiscard]] bool fillWithRandom(void* bytes, std::size_t size);

}  // namespace seldial::platform
