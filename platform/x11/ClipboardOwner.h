// An empty clipboard, as X knows it: a clipboard that we own and have nothing to offer on. A
// clipboard that nobody owns is one that clipboard managers fill with an old text again.
#pragma once

#include "platform/x11/Connection.h"
#include "platform/x11/EventPump.h"

namespace seldial::platform::x11 {

/// Main thread only.
class ClipboardOwner final : public EventHandler {
 public:
  ClipboardOwner(Connection& connection, EventPump& pump);

  /// Takes the clipboard. False when the server gave it to somebody else, or is gone.
  bool take();

  bool handle(const xcb_generic_event_t& event) override;

 private:
  void answer(const xcb_selection_request_event_t& request);
  bool fulfil(const xcb_selection_request_event_t& request, xcb_atom_t property);

  Connection& connection_;
  EventPump& pump_;
  xcb_timestamp_t since_ = XCB_CURRENT_TIME;
};

}  // namespace seldial::platform::x11
