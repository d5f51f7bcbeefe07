// The doubles of Dispatch. Submitted work runs only when the test runs it.
#include <dispatch/dispatch.h>
#include <pthread.h>

#include "tests/platform/macos/Apple.h"

using seldial::tests::apple;

namespace {

dispatch_queue_s mainQueue;

std::string queueName(const dispatch_object_s* queue) {
  return queue == &mainQueue ? "main queue" : apple().nameOf(queue);
}

}  // namespace

extern "C" {

const dispatch_source_type_s _dispatch_source_type_signal{};

dispatch_queue_t dispatch_get_main_queue() noexcept {
  return &mainQueue;
}

dispatch_queue_t dispatch_queue_create(const char* label,
                                       dispatch_queue_attr_t attributes) noexcept {
  apple().calls.push_back(std::string("dispatch_queue_create ") + label +
                          (attributes == nullptr ? " serial" : " with attributes"));
  return reinterpret_cast<dispatch_queue_t>(
      apple().make("queue " + std::to_string(++apple().queues)));
}

void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) noexcept {
  apple().calls.push_back("dispatch_async_f " + queueName(queue));
  apple().submitted.push_back({queue, 0, context, work});
}

dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t delta) noexcept {
  apple().calls.push_back("dispatch_time " + std::to_string(when) + " " + std::to_string(delta));
  return static_cast<dispatch_time_t>(delta) + 1;
}

void dispatch_after_f(dispatch_time_t when, dispatch_queue_t queue, void* context,
                      dispatch_function_t work) noexcept {
  apple().calls.push_back("dispatch_after_f " + std::to_string(when) + " " + queueName(queue));
  apple().submitted.push_back({queue, when, context, work});
}

dispatch_source_t dispatch_source_create(dispatch_source_type_t type, std::uintptr_t handle,
                                         std::uintptr_t mask, dispatch_queue_t queue) noexcept {
  apple().calls.push_back("dispatch_source_create " + std::to_string(handle) + " " +
                          std::to_string(mask) + " on " + queueName(queue));
  const auto source = reinterpret_cast<dispatch_source_t>(apple().make("signal source"));
  apple().sources[source] = {type, handle, queue};
  return source;
}

void dispatch_source_set_event_handler_f(dispatch_source_t source,
                                         dispatch_function_t handler) noexcept {
  apple().sources.at(source).handler = handler;
}

void dispatch_set_context(dispatch_object_t object, void* context) noexcept {
  apple().sources.at(object).context = context;
}

void dispatch_resume(dispatch_object_t object) noexcept {
  apple().sources.at(object).resumed = true;
}

void dispatch_release(dispatch_object_t object) noexcept {
  apple().calls.push_back("dispatch_release " + queueName(object));
  apple().release(object);
}

int pthread_main_np() {
  return apple().onMainThread ? 1 : 0;
}

}  // extern "C"
