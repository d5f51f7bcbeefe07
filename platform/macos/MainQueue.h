#pragma once

#include "platform/MainQueue.h"

namespace seldial::platform::macos {

/// The main queue of Dispatch, which the application's main run loop serves.
class DispatchMainQueue final : public platform::MainQueue {
 public:
  void async(Task task) override;
  [[nodiscard]] bool isMainThread() const override;
};

}  // namespace seldial::platform::macos
