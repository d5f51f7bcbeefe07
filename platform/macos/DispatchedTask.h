// How a task travels through Dispatch, which takes a plain function and a pointer.
#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace seldial::platform::macos {

/// The context to submit with runKeptTask(). A task that is never run is never destroyed.
inline void* keptTask(std::function<void()> task) {
  return new std::function<void()>(std::move(task));
}

/// Runs and destroys what keptTask() kept.
inline void runKeptTask(void* context) {
  const std::unique_ptr<std::function<void()>> task(static_cast<std::function<void()>*>(context));
  (*task)();
}

}  // namespace seldial::platform::macos
