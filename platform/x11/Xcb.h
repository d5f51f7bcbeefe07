// XCB and its XKB extension for the files of this folder, with owning pointers to replies and typed
// access to events.
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>

// xcb/xkb.h has a field named `explicit`, which is a keyword of C++.
#ifdef __clang__
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit isExplicit
#include <xcb/xkb.h>
#undef explicit
#ifdef __clang__
#pragma clang diagnostic pop
#endif

namespace seldial::platform::x11 {

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};

/// A reply, event or error that XCB allocated; null if there is none.
template <class Type>
using Freed = std::unique_ptr<Type, Free>;

template <class Type>
Freed<Type> freed(Type* memory) {
  return Freed<Type>(memory);
}

/// The kind of an event, whether it comes from the server or was sent by another client.
inline int kindOf(const xcb_generic_event_t& event) {
  return event.response_type & 0x7F;
}

/// An event of a known kind.
template <class Event>
const Event& as(const xcb_generic_event_t& event) {
  return reinterpret_cast<const Event&>(event);
}

}  // namespace seldial::platform::x11
