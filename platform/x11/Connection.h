// The connection to the X server: its extensions, the names it has numbered for us, and one window
// of our own that is never shown.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/x11/Xcb.h"

namespace seldial::platform::x11 {

/// The numbers of the names that the ports use.
struct Atoms {
  xcb_atom_t clipboard = XCB_ATOM_NONE;
  xcb_atom_t targets = XCB_ATOM_NONE;
  xcb_atom_t timestamp = XCB_ATOM_NONE;
  xcb_atom_t utf8String = XCB_ATOM_NONE;
  xcb_atom_t utf8PlainText = XCB_ATOM_NONE;  ///< text/plain;charset=utf-8
  xcb_atom_t incr = XCB_ATOM_NONE;
  xcb_atom_t xtestDevice = XCB_ATOM_NONE;
};

/// Main thread only. Once the connection is lost every request is dropped and every reply is null.
class Connection {
 public:
  /// Connects to the server that DISPLAY names and checks that it can do what the ports need.
  /// Null when there is none; a trouble is one line on standard error.
  static std::unique_ptr<Connection> open();

  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  [[nodiscard]] xcb_connection_t* xcb() const { return xcb_; }
  [[nodiscard]] xcb_window_t root() const { return root_; }
  [[nodiscard]] xcb_window_t window() const { return window_; }
  [[nodiscard]] const Atoms& atoms() const { return atoms_; }
  [[nodiscard]] bool lost() const { return xcb_connection_has_error(xcb_) != 0; }

  /// Returns once the server has acted on every request and has sent every event before it.
  void synchronise() const;

  /// The kind of every XKB event.
  [[nodiscard]] int xkbEvent() const { return xkbEvent_; }
  /// The extension number in every XInput 2 event.
  [[nodiscard]] int inputExtension() const { return inputExtension_; }

  /// What is common to all windows of one client, and different for any two clients.
  [[nodiscard]] std::uint32_t clientOf(xcb_window_t window) const {
    return window & ~xcb_get_setup(xcb_)->resource_id_mask;
  }

 private:
  explicit Connection(xcb_connection_t* xcb) : xcb_(xcb) {}
  bool handshake();
  const char* missingExtension();
  const char* missingAbility();
  void internAtoms();
  void createWindow();

  xcb_connection_t* xcb_;
  xcb_window_t root_ = XCB_WINDOW_NONE;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  Atoms atoms_;
  int xkbEvent_ = 0;
  int inputExtension_ = 0;
};

}  // namespace seldial::platform::x11
