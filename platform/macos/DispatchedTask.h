#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace seldial::platform::macos {

/// Dispatch takes a function and a context. For a task, pass runTaskContext() and the result of
/// this function. A task that never runs is never destroyed.
inline void* newTaskContext(std::function<void()> task) {
  return new std::function<void()>(std::move(task));
}

/// Runs and destroys the task of a context.
inline void runTaskContext(void* context) {
  const std::unique_ptr<std::function<void()>> task(static_cast<std::function<void()>*>(context));
  (*task)();
}

}  // namespace seldial::platform::macos
