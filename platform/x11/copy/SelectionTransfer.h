// Reads a selection that another client owns.
#pragma once

#include <optional>
#include <string>

#include "platform/x11/Connection.h"
#include "platform/x11/EventPump.h"

namespace seldial::platform::x11 {

/// The window that owns the selection; none if nobody does or the connection is lost. One round
/// trip.
xcb_window_t ownerOf(const Connection& connection, xcb_atom_t selection);

/// The text of the selection in UTF-8, unaltered if it is valid, otherwise repaired
/// (SelectionText.h). Nothing if the owner offers no text, the text is longer than 256 MiB, the
/// owner does not answer within one second (for a text in pieces: within one second after the last
/// piece), or the transfer takes longer than 5 seconds.
std::optional<std::string> readSelectionText(Connection& connection, EventPump& pump,
                                             xcb_atom_t selection);

/// The answer of an owner.
struct SelectionAnswer {
  xcb_atom_t type = XCB_ATOM_NONE;  ///< of the bytes; none if the owner refused
  std::string bytes;
};

/// One transfer. It has its own window, which is destroyed with it, so that an owner that answers
/// too late, or continues an abandoned transfer, does no harm. Main thread only.
class SelectionTransfer final : public EventHandler {
 public:
  /// Abandons an answer of more than `maxBytes`, or one that is not complete at `end`.
  SelectionTransfer(Connection& connection, EventPump& pump, std::size_t maxBytes,
                    EventPump::Clock::time_point end);
  ~SelectionTransfer() override;
  SelectionTransfer(const SelectionTransfer&) = delete;
  SelectionTransfer& operator=(const SelectionTransfer&) = delete;

  /// Requests `selection` as `target`. Nothing if no answer begins before `deadline`, or if it is
  /// too large or incomplete.
  std::optional<SelectionAnswer> ask(xcb_atom_t selection, xcb_atom_t target,
                                     EventPump::Clock::time_point deadline);

  bool handle(const xcb_generic_event_t& event) override;

 private:
  std::optional<SelectionAnswer> takeProperty();
  std::optional<SelectionAnswer> takePieces();

  Connection& connection_;
  EventPump& pump_;
  const std::size_t maxBytes_;
  const EventPump::Clock::time_point end_;
  xcb_window_t window_;
  xcb_atom_t target_ = XCB_ATOM_NONE;
  std::optional<xcb_atom_t> answered_;  ///< the property of the owner's answer
  bool pieceArrived_ = false;
};

}  // namespace seldial::platform::x11
