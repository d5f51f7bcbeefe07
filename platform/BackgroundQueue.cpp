#include "platform/BackgroundQueue.h"

#include "platform/Installed.h"

namespace seldial::platform {

BackgroundQueue& sharedBackgroundQueue() {
  if (const auto& queue = installed<BackgroundQueue>()) return *queue;
  static auto* const system = new std::shared_ptr<BackgroundQueue>(makeSystemBackgroundQueue());
  return **system;
}

}  // namespace seldial::platform
