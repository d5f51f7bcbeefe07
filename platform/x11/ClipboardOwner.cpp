#include "platform/x11/ClipboardOwner.h"

#include <array>
#include <cstring>

namespace seldial::platform::x11 {

ClipboardOwner::ClipboardOwner(Connection& connection, EventPump& pump)
    : connection_(connection), pump_(pump) {
  pump.add(*this);
}

// The server takes it for the time of now: an older one could come before that of the last copy,
// and be refused. A change of a property of ours tells that time, for those who ask since when.
bool ClipboardOwner::take() {
  auto* const xcb = connection_.xcb();
  xcb_change_property(xcb, XCB_PROP_MODE_APPEND, connection_.window(),
                      connection_.atoms().timestamp, XCB_ATOM_INTEGER, 32, 0, nullptr);
  xcb_set_selection_owner(xcb, connection_.window(), connection_.atoms().clipboard,
                          XCB_CURRENT_TIME);
  const auto cookie = xcb_get_selection_owner(xcb, connection_.atoms().clipboard);
  const auto reply = freed(xcb_get_selection_owner_reply(xcb, cookie, nullptr));
  pump_.handleArrived();
  return reply && reply->owner == connection_.window();
}

bool ClipboardOwner::handle(const xcb_generic_event_t& event) {
  if (kindOf(event) == XCB_PROPERTY_NOTIFY &&
      as<xcb_property_notify_event_t>(event).window == connection_.window()) {
    since_ = as<xcb_property_notify_event_t>(event).time;
    return true;
  }
  if (kindOf(event) != XCB_SELECTION_REQUEST) return false;
  answer(as<xcb_selection_request_event_t>(event));
  return true;
}

void ClipboardOwner::answer(const xcb_selection_request_event_t& request) {
  // Clients from before the current conventions name no property.
  const auto property = request.property != XCB_ATOM_NONE ? request.property : request.target;
  xcb_selection_notify_event_t notify{};
  notify.response_type = XCB_SELECTION_NOTIFY;
  notify.time = request.time;
  notify.requestor = request.requestor;
  notify.selection = request.selection;
  notify.target = request.target;
  notify.property = fulfil(request, property) ? property : xcb_atom_t{XCB_ATOM_NONE};
  std::array<char, 32> bytes{};
  std::memcpy(bytes.data(), &notify, sizeof notify);
  xcb_send_event(connection_.xcb(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, bytes.data());
}

/// Only what every owner has to tell. MULTIPLE would have nothing to bring together.
bool ClipboardOwner::fulfil(const xcb_selection_request_event_t& request, xcb_atom_t property) {
  const Atoms& atoms = connection_.atoms();
  const auto put = [&](xcb_atom_t type, std::uint32_t count, const void* values) {
    xcb_change_property(connection_.xcb(), XCB_PROP_MODE_REPLACE, request.requestor, property, type,
                        32, count, values);
    return true;
  };
  if (request.selection != atoms.clipboard) return false;
  const std::array targets{atoms.targets, atoms.timestamp};
  if (request.target == atoms.targets) return put(XCB_ATOM_ATOM, targets.size(), targets.data());
  if (request.target == atoms.timestamp) return put(XCB_ATOM_INTEGER, 1, &since_);
  return false;
}

}  // namespace seldial::platform::x11
