// The shared background queue on Dispatch.
//
// The system's concurrent queues start no further thread once 64 tasks are blocked in one, and most
// of our tasks do block, for as long as somebody stays connected. A serial queue gets a thread
// whenever it has work, however many others are blocked, up to the system's limit of threads in a
// process. So each task has a serial queue of its own, of default priority.
#include "platform/BackgroundQueue.h"

#include <dispatch/dispatch.h>

#include <utility>

#include "platform/macos/DispatchedTask.h"

namespace seldial::platform {
namespace {

/// A new serial queue; tasks that were submitted keep it alive beyond this object.
class OwnQueue {
 public:
  OwnQueue() : queue_(dispatch_queue_create("org.seldial.background", nullptr)) {}
  ~OwnQueue() { dispatch_release(queue_); }
  OwnQueue(const OwnQueue&) = delete;
  OwnQueue& operator=(const OwnQueue&) = delete;

  [[nodiscard]] dispatch_queue_t get() const { return queue_; }

 private:
  dispatch_queue_t queue_;
};

class QueuePerTask final : public BackgroundQueue {
 public:
  void async(Task task) override {
    const OwnQueue queue;
    dispatch_async_f(queue.get(), macos::keptTask(std::move(task)), &macos::runKeptTask);
  }

  void after(std::chrono::nanoseconds delay, Task task) override {
    const OwnQueue queue;
    dispatch_after_f(dispatch_time(DISPATCH_TIME_NOW, delay.count()), queue.get(),
                     macos::keptTask(std::move(task)), &macos::runKeptTask);
  }
};

}  // namespace

std::shared_ptr<BackgroundQueue> makeSystemBackgroundQueue() {
  return std::make_shared<QueuePerTask>();
}

}  // namespace seldial::platform
