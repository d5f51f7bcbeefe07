#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <string>

#include "tests/support/desktop/Xcb.h"

namespace seldial::platform::x11 {

/// Another program that holds combinations, until it ends.
class ForeignGrabs {
 public:
  explicit ForeignGrabs(const std::string& display)
      : connection_(tests::connectToServer(display)) {}
  ~ForeignGrabs() { xcb_disconnect(connection_); }
  ForeignGrabs(const ForeignGrabs&) = delete;
  ForeignGrabs& operator=(const ForeignGrabs&) = delete;

  /// Grabs a combination; false if the server refuses. `modifiers` are kState bits.
  bool grab(std::uint8_t key, unsigned modifiers) {
    const auto cookie = xcb_grab_key_checked(connection_, 0, tests::rootOf(connection_),
                                             static_cast<std::uint16_t>(modifiers), key,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    return tests::freed(xcb_request_check(connection_, cookie)) == nullptr;
  }

  void ungrab(std::uint8_t key, unsigned modifiers) {
    xcb_ungrab_key(connection_, key, tests::rootOf(connection_),
                   static_cast<std::uint16_t>(modifiers));
    tests::synchronise(connection_);
  }

  /// Whether nobody holds it.
  bool isFree(std::uint8_t key, unsigned modifiers) {
    const bool grabbed = grab(key, modifiers);
    if (grabbed) ungrab(key, modifiers);
    return grabbed;
  }

 private:
  xcb_connection_t* connection_;
};

}  // namespace seldial::platform::x11
