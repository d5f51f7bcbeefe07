#include "platform/x11/SelectionPasteboard.h"

#include "platform/x11/SelectionText.h"

namespace seldial::platform::x11 {

void SelectionPasteboard::clearContents() {
  source_.terminal.reset();
  // Another client may take it at the same instant; one that does so twice means to keep it.
  stale_ = !clipboard_.take() && !clipboard_.take();
}

std::optional<std::string> SelectionPasteboard::stringForType(const std::string& type) {
  if (type != kUTF8PlainText) return {};
  const xcb_atom_t selection =
      source_.terminal ? xcb_atom_t{XCB_ATOM_PRIMARY} : connection_.atoms().clipboard;
  const auto owner = ownerOf(selection);
  if (owner == XCB_WINDOW_NONE || owner == connection_.window()) return {};
  // A selection in another window than the one in use is not what the user means.
  if (source_.terminal ? connection_.clientOf(owner) != *source_.terminal : stale_) return {};
  return readSelectionText(connection_, pump_, selection);
}

xcb_window_t SelectionPasteboard::ownerOf(xcb_atom_t selection) const {
  auto* const xcb = connection_.xcb();
  const auto cookie = xcb_get_selection_owner(xcb, selection);
  const auto reply = freed(xcb_get_selection_owner_reply(xcb, cookie, nullptr));
  return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

}  // namespace seldial::platform::x11
