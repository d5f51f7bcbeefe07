// The background queue on Dispatch.
//
// Dispatch's concurrent queues start no new thread once 64 tasks are blocked, and a task of the
// socket library blocks for as long as its client stays connected. A serial queue gets a thread
// whenever it has work, however many others are blocked, up to the system's limit of threads per
// process. So each task gets its own serial queue, of default priority.
#include "platform/BackgroundQueue.h"

#include <dispatch/dispatch.h>

#include <utility>

#include "platform/macos/DispatchedTask.h"

namespace seldial::platform {
namespace {

/// A new serial queue. Submitted tasks keep it alive beyond this object.
class SerialQueue {
 public:
  SerialQueue() : queue_(dispatch_queue_create("org.seldial.background", nullptr)) {}
  ~SerialQueue() { dispatch_release(queue_); }
  SerialQueue(const SerialQueue&) = delete;
  SerialQueue& operator=(const SerialQueue&) = delete;

  [[nodiscard]] dispatch_queue_t get() const { return queue_; }

 private:
  dispatch_queue_t queue_;
};

class QueuePerTask final : public BackgroundQueue {
 public:
  void async(Task task) override {
    const SerialQueue queue;
    dispatch_async_f(queue.get(), macos::newTaskContext(std::move(task)), &macos::runTaskContext);
  }

  void after(std::chrono::nanoseconds delay, Task task) override {
    const SerialQueue queue;
    dispatch_after_f(dispatch_time(DISPATCH_TIME_NOW, delay.count()), queue.get(),
                     macos::newTaskContext(std::move(task)), &macos::runTaskContext);
  }
};

}  // namespace

const std::shared_ptr<BackgroundQueue>& sharedBackgroundQueue() {
  static const auto* const queue =
      new std::shared_ptr<BackgroundQueue>(std::make_shared<QueuePerTask>());
  return *queue;
}

}  // namespace seldial::platform
