#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace seldial::platform::macos {

/// Dispatch takes a function and a context. For a task, these are runTaskContext() and what this
/// returns. A task that is never run is never destroyed.
inline void* newTaskContext(std::function<void()> task) {
  return new std::function<void()>(std::move(task));
}

/// Runs and destroys the task of a context.
inline void runTaskContext(void* context) {
  const std::unique_ptr<std::function<void()>> task(static_cast<std::function<void()>*>(context));
  (*task)();
}

}  // namespace seldial::platform::macos
