// Whether the PRIMARY selection is still what the user sees selected.
//
// Many applications keep PRIMARY when a click clears the selection. After a click that selects, the
// application takes PRIMARY; after one that clears the selection, it does not. So PRIMARY is stale
// in a window in which the first mouse button was pressed after PRIMARY was taken.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "platform/x11/Session.h"

namespace seldial::platform::x11 {

/// Watches PRIMARY and the mouse buttons while a hot key is registered. Otherwise, and while nobody
/// clicks or selects, the server sends no events. Main thread only.
class PrimarySelection final : public EventHandler {
 public:
  explicit PrimarySelection(Session& session);
  ~PrimarySelection() override;
  PrimarySelection(const PrimarySelection&) = delete;
  PrimarySelection& operator=(const PrimarySelection&) = delete;

  /// Whether the first button was pressed in `window`, or a window inside it, since PRIMARY was
  /// taken, as far as it was watched.
  [[nodiscard]] bool isStaleIn(xcb_window_t window) const;

  /// How often PRIMARY was taken, as far as it was watched.
  [[nodiscard]] unsigned ownerChanges() const { return ownerChanges_; }

  bool handle(const xcb_generic_event_t& event) override;
  /// Starts or stops watching.
  void idle() override;

 private:
  void watch(bool watching);
  void taken(xcb_timestamp_t time);
  void pressed(std::uint16_t pointer, std::uint32_t button, xcb_timestamp_t time);
  [[nodiscard]] bool wasTakenBefore(xcb_timestamp_t time) const;

  Connection& connection_;
  EventPump& pump_;
  const HotKeyGrabs& hotKeys_;
  bool watching_ = false;
  int takenEvent_ = 0;  ///< the event type of XFixes' SelectionNotify
  unsigned ownerChanges_ = 0;
  std::optional<xcb_timestamp_t>
      taken_;  ///< when PRIMARY was taken; nothing: before it was watched
  /// The last press in each window since `taken_`.
  std::map<xcb_window_t, xcb_timestamp_t> presses_;
  std::optional<xcb_timestamp_t> droppedPress_;  ///< a press in a window that is no longer recorded
};

}  // namespace seldial::platform::x11
