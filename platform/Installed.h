// Where a process keeps the one implementation of each platform interface.
//
// The program installs its ports once, in the place where it starts, before any other thread runs;
// a test installs a double. Everybody else only looks.
#pragma once

#include <memory>

namespace seldial::platform {

/// The implementation of `Interface` that this process uses; null until one is installed.
/// Not guarded: install before the first thread that looks is started. The slot is never
/// destroyed, so that a thread which outlives main() still finds it.
template <class Interface>
std::shared_ptr<Interface>& installed() {
  static auto* const slot = new std::shared_ptr<Interface>;
  return *slot;
}

}  // namespace seldial::platform
