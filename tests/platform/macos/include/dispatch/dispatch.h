// The part of Dispatch that the port uses, declared from its public documentation.
#pragma once

#include <cstdint>

struct dispatch_object_s {};
struct dispatch_queue_s : dispatch_object_s {};
struct dispatch_queue_attr_s : dispatch_object_s {};
struct dispatch_source_s : dispatch_object_s {};
struct dispatch_source_type_s {};

using dispatch_object_t = dispatch_object_s*;
using dispatch_queue_t = dispatch_queue_s*;
using dispatch_queue_attr_t = dispatch_queue_attr_s*;
using dispatch_source_t = dispatch_source_s*;
using dispatch_source_type_t = const dispatch_source_type_s*;
using dispatch_time_t = std::uint64_t;
using dispatch_function_t = void (*)(void*);

inline constexpr dispatch_time_t DISPATCH_TIME_NOW = 0;
#define DISPATCH_SOURCE_TYPE_SIGNAL (&_dispatch_source_type_signal)

extern "C" {
extern const dispatch_source_type_s _dispatch_source_type_signal;

dispatch_queue_t dispatch_get_main_queue() noexcept;
dispatch_queue_t dispatch_queue_create(const char* label,
                                       dispatch_queue_attr_t attributes) noexcept;
void dispatch_async_f(dispatch_queue_t queue, void* context, dispatch_function_t work) noexcept;
dispatch_time_t dispatch_time(dispatch_time_t when, std::int64_t delta) noexcept;
void dispatch_after_f(dispatch_time_t when, dispatch_queue_t queue, void* context,
                      dispatch_function_t work) noexcept;
dispatch_source_t dispatch_source_create(dispatch_source_type_t type, std::uintptr_t handle,
                                         std::uintptr_t mask, dispatch_queue_t queue) noexcept;
void dispatch_source_set_event_handler_f(dispatch_source_t source,
                                         dispatch_function_t handler) noexcept;
void dispatch_set_context(dispatch_object_t object, void* context) noexcept;
void dispatch_resume(dispatch_object_t object) noexcept;
void dispatch_release(dispatch_object_t object) noexcept;
}
