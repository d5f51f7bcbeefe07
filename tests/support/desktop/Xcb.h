// XCB for test doubles: owning pointers to replies, and checks of calls that cannot fail.
#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

namespace seldial::tests {

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};

/// A reply, event or error that XCB allocated.
template <class Type>
using Freed = std::unique_ptr<Type, Free>;

template <class Type>
Freed<Type> freed(Type* value) {
  return Freed<Type>(value);
}

inline xcb_connection_t* connectToServer(const std::string& display) {
  auto* const connection = xcb_connect(display.c_str(), nullptr);
  if (xcb_connection_has_error(connection) != 0) {
    throw std::runtime_error("cannot connect to the X server " + display);
  }
  return connection;
}

inline xcb_window_t rootOf(xcb_connection_t* connection) {
  return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

inline xcb_atom_t atom(xcb_connection_t* connection, const std::string& name) {
  const auto cookie =
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.c_str());
  const auto reply = freed(xcb_intern_atom_reply(connection, cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

/// Returns once the server has executed all requests.
inline void synchronise(xcb_connection_t* connection) {
  freed(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

}  // namespace seldial::tests
