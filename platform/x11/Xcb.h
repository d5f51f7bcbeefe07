// XCB for the files of this folder: what its calls return is freed, events are seen as their type.
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

namespace seldial::platform::x11 {

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};

/// A reply, event or error that XCB allocated; null when there is none.
template <class Type>
using Freed = std::unique_ptr<Type, Free>;

template <class Type>
Freed<Type> freed(Type* memory) {
  return Freed<Type>(memory);
}

/// The kind of an event, whether the server made it or another client sent it.
inline int kindOf(const xcb_generic_event_t& event) {
  return event.response_type & 0x7F;
}

/// An event of a known kind.
template <class Event>
const Event& as(const xcb_generic_event_t& event) {
  return reinterpret_cast<const Event&>(event);
}

}  // namespace seldial::platform::x11
