// One selection on its way from its owner to us.
#pragma once

#include <optional>
#include <string>

#include "platform/x11/Connection.h"
#include "platform/x11/EventPump.h"

namespace seldial::platform::x11 {

/// What an owner answered.
struct SelectionAnswer {
  xcb_atom_t type = XCB_ATOM_NONE;  ///< what the bytes are; none: the owner refused
  std::string bytes;
};

/// Asks on a window of its own, which goes with it: an owner that answers too late, or goes on with
/// a transfer that was given up, reaches nothing.
class SelectionTransfer final : public EventHandler {
 public:
  /// An answer of more than `mostBytes` is given up.
  SelectionTransfer(Connection& connection, EventPump& pump, std::size_t mostBytes);
  ~SelectionTransfer() override;
  SelectionTransfer(const SelectionTransfer&) = delete;
  SelectionTransfer& operator=(const SelectionTransfer&) = delete;

  /// Asks for `selection` as `target`. Nothing when no answer begins before `deadline`, it stays
  /// incomplete, or it is too large.
  std::optional<SelectionAnswer> ask(xcb_atom_t selection, xcb_atom_t target,
                                     EventPump::Clock::time_point deadline);

  bool handle(const xcb_generic_event_t& event) override;

 private:
  std::optional<SelectionAnswer> takeProperty();
  std::optional<SelectionAnswer> takePieces();

  Connection& connection_;
  EventPump& pump_;
  const std::size_t mostBytes_;
  xcb_window_t window_;
  xcb_atom_t target_ = XCB_ATOM_NONE;
  std::optional<xcb_atom_t> answered_;  ///< the property of the owner's answer
  bool pieceCame_ = false;
};

}  // namespace seldial::platform::x11
