// The connection to the X server, with the extensions and atoms that the ports use and one window
// that is never mapped.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "platform/x11/Xcb.h"

namespace seldial::platform::x11 {

/// The atoms that the ports use.
struct Atoms {
  xcb_atom_t clipboard = XCB_ATOM_NONE;
  xcb_atom_t targets = XCB_ATOM_NONE;
  xcb_atom_t timestamp = XCB_ATOM_NONE;
  xcb_atom_t utf8String = XCB_ATOM_NONE;
  xcb_atom_t utf8PlainText = XCB_ATOM_NONE;  ///< text/plain;charset=utf-8
  xcb_atom_t incr = XCB_ATOM_NONE;
  xcb_atom_t xtestDevice = XCB_ATOM_NONE;
};

/// Main thread only. Once the connection is lost, requests are dropped and replies are null.
class Connection {
 public:
  /// Connects to the server that DISPLAY names and checks that it has what the ports need. Null if
  /// DISPLAY is not set, or, after one line on standard error, if the connection fails or takes
  /// longer than `limit`. If there is a server, the line ends with `consequence`.
  static std::unique_ptr<Connection> open(
      std::chrono::milliseconds limit = kConnectLimit,
      const std::string& consequence = "there will be no hot key");

  /// A server answers at once, unless it is starting or very busy.
  static constexpr std::chrono::seconds kConnectLimit{10};

  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  [[nodiscard]] xcb_connection_t* xcb() const { return xcb_; }
  [[nodiscard]] xcb_window_t root() const { return root_; }
  [[nodiscard]] xcb_window_t window() const { return window_; }
  [[nodiscard]] const Atoms& atoms() const { return atoms_; }
  [[nodiscard]] bool lost() const { return xcb_connection_has_error(xcb_) != 0; }

  /// Returns once the server has executed every request so far and has sent the events that they
  /// caused.
  void synchronise() const;

  /// The event type of every XKB event.
  [[nodiscard]] int xkbEvent() const { return xkbEvent_; }
  /// The extension number in every XInput 2 event.
  [[nodiscard]] int inputExtension() const { return inputExtension_; }

  /// The client that a window belongs to: the same number for all of its windows.
  [[nodiscard]] std::uint32_t clientOf(xcb_window_t window) const {
    return window & ~xcb_get_setup(xcb_)->resource_id_mask;
  }

  /// Selects or deselects raw XInput 2 events of all master devices. They arrive regardless of
  /// focus and grabs.
  void selectRawInput(std::uint32_t events, bool selected);

 private:
  /// A connection, or the reason why there is none.
  struct OpenResult {
    std::unique_ptr<Connection> connection;
    std::string failure;
  };

  explicit Connection(xcb_connection_t* xcb) : xcb_(xcb) {}
  static OpenResult tryToOpen(const std::string& display, const std::string& consequence);
  const char* handshake();
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
  std::uint32_t rawEvents_ = 0;  ///< those that are selected
};

/// Selects the XInput 2 events of `devices` (one device or a group) that the server sends for the
/// root window.
void selectInput(const Connection& connection, std::uint16_t devices, std::uint32_t events);

/// The XInput 2 type of an event; 0 for an event of another kind.
int inputEventType(const Connection& connection, const xcb_generic_event_t& event);

}  // namespace seldial::platform::x11
