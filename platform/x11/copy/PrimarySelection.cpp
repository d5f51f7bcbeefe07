#include "platform/x11/copy/PrimarySelection.h"

#include <xcb/xfixes.h>
#include <xcb/xinput.h>

#include <utility>

namespace seldial::platform::x11 {
namespace {

/// The maximum number of windows recorded between two selections. A click adds all nested windows
/// under the pointer, about four.
constexpr std::size_t kMaxWindows = 1000;

/// Higher buttons are wheels.
constexpr std::uint32_t kLastMainButton = 3;

/// Server times wrap around after 49 days.
bool isLater(xcb_timestamp_t time, xcb_timestamp_t than) {
  return static_cast<std::int32_t>(time - than) > 0;
}

/// Whether a physical button is the first one for applications; left-handed users swap the first
/// and the third.
bool isFirstButton(const Connection& connection, std::uint16_t pointer, std::uint32_t button) {
  auto* const xcb = connection.xcb();
  const auto cookie = xcb_input_get_device_button_mapping(xcb, static_cast<std::uint8_t>(pointer));
  const auto reply = freed(xcb_input_get_device_button_mapping_reply(xcb, cookie, nullptr));
  if (!reply || button == 0 || button > reply->map_size) return false;
  return xcb_input_get_device_button_mapping_map(reply.get())[button - 1] == 1;
}

/// The child of `window` under the pointer.
xcb_window_t childAtPointer(const Connection& connection, std::uint16_t pointer,
                            xcb_window_t window) {
  auto* const xcb = connection.xcb();
  const auto cookie = xcb_input_xi_query_pointer(xcb, window, pointer);
  const auto reply = freed(xcb_input_xi_query_pointer_reply(xcb, cookie, nullptr));
  return reply ? reply->child : xcb_window_t{XCB_WINDOW_NONE};
}

}  // namespace

PrimarySelection::PrimarySelection(Session& session)
    : connection_(session.connection), pump_(session.pump), hotKeys_(session.hotKeys) {
  pump_.add(*this);
}

PrimarySelection::~PrimarySelection() {
  if (watching_) watch(false);
  pump_.remove(*this);
}

bool PrimarySelection::isStaleIn(xcb_window_t window) const {
  const auto press = presses_.find(window);
  return (press != presses_.end() && wasTakenBefore(press->second)) ||
         (droppedPress_ && wasTakenBefore(*droppedPress_));
}

bool PrimarySelection::wasTakenBefore(xcb_timestamp_t time) const {
  return !taken_ || isLater(time, *taken_);
}

// Replacing a hot key has no effect: both steps are done before the loop is idle.
void PrimarySelection::idle() {
  if (hotKeys_.hasRegistrations() != watching_ && !connection_.lost()) watch(!watching_);
}

void PrimarySelection::watch(bool watching) {
  const auto* const xfixes = xcb_get_extension_data(connection_.xcb(), &xcb_xfixes_id);
  if (xfixes == nullptr || xfixes->present == 0) return;
  watching_ = watching;
  takenEvent_ = xfixes->first_event + XCB_XFIXES_SELECTION_NOTIFY;
  taken_.reset();
  presses_.clear();
  droppedPress_.reset();
  auto* const xcb = connection_.xcb();
  // The server accepts no other request of the extension before this one.
  xcb_discard_reply(xcb, xcb_xfixes_query_version(xcb, 1, 0).sequence);
  const std::uint32_t taking = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER;
  xcb_xfixes_select_selection_input(xcb, connection_.window(), XCB_ATOM_PRIMARY,
                                    watching ? taking : 0U);
  connection_.selectRawInput(XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS, watching);
}

bool PrimarySelection::handle(const xcb_generic_event_t& event) {
  if (!watching_) return false;
  if (kindOf(event) == takenEvent_) {
    taken(as<xcb_xfixes_selection_notify_event_t>(event).selection_timestamp);
    return true;
  }
  if (inputEventType(connection_, event) != XCB_INPUT_RAW_BUTTON_PRESS) return false;
  const auto& press = as<xcb_input_raw_button_press_event_t>(event);
  if (press.detail <= kLastMainButton) pressed(press.deviceid, press.detail, press.time);
  return true;
}

// `time` is the time of the user's action, as stated by the owner. It may precede a press that
// has already been reported.
void PrimarySelection::taken(xcb_timestamp_t time) {
  ++ownerChanges_;
  taken_ = time;
  std::erase_if(presses_, [this](const auto& press) { return !wasTakenBefore(press.second); });
}

void PrimarySelection::pressed(std::uint16_t pointer, std::uint32_t button, xcb_timestamp_t time) {
  if (!isFirstButton(connection_, pointer, button)) return;
  for (auto window = childAtPointer(connection_, pointer, connection_.root());
       window != XCB_WINDOW_NONE; window = childAtPointer(connection_, pointer, window)) {
    presses_[window] = time;
  }
  if (presses_.size() <= kMaxWindows) return;
  presses_.clear();
  droppedPress_ = time;
}

}  // namespace seldial::platform::x11
