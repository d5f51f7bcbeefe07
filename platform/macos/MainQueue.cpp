#include "platform/macos/MainQueue.h"

#include <dispatch/dispatch.h>
#include <pthread.h>

#include <utility>

#include "platform/macos/DispatchedTask.h"

namespace seldial::platform::macos {

void DispatchMainQueue::async(Task task) {
  dispatch_async_f(dispatch_get_main_queue(), keptTask(std::move(task)), &runKeptTask);
}

bool DispatchMainQueue::isMainThread() const {
  return pthread_main_np() != 0;
}

}  // namespace seldial::platform::macos
