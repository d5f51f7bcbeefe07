#include <array>
#include <cstring>
#include <functional>
#include <utility>

#include "platform/linux/Applications.h"
#include "platform/x11/Desktop.h"
#include "platform/x11/copy/CopyKeystroke.h"
#include "platform/x11/copy/FocusedWindow.h"
#include "platform/x11/copy/PrimarySelection.h"
#include "platform/x11/copy/SelectionTransfer.h"

namespace seldial::platform::x11 {
namespace {

/// On a busy machine, 77 of 80 copies arrived with 10 ms, 100 of 100 with 20 ms.
constexpr std::chrono::milliseconds kWinePause{20};

/// An empty clipboard on X11 is one that we own without offering content: clipboard managers would
/// fill a clipboard without an owner with an old text.
class EmptyClipboard final : public EventHandler {
 public:
  /// `lost` is called when another client has taken the selection.
  EmptyClipboard(Connection& connection, EventPump& pump, std::function<void()> lost)
      : connection_(connection), pump_(pump), lost_(std::move(lost)) {
    pump_.add(*this);
  }
  ~EmptyClipboard() override { pump_.remove(*this); }
  EmptyClipboard(const EmptyClipboard&) = delete;
  EmptyClipboard& operator=(const EmptyClipboard&) = delete;

  /// False if another client became the owner, or the connection is lost.
  bool takeOwnership();

  bool handle(const xcb_generic_event_t& event) override;

 private:
  void answer(const xcb_selection_request_event_t& request);
  bool fulfil(const xcb_selection_request_event_t& request, xcb_atom_t property);

  Connection& connection_;
  EventPump& pump_;
  const std::function<void()> lost_;
  xcb_timestamp_t since_ = XCB_CURRENT_TIME;
};

// Uses the server's current time: an older time could precede the last copy, and the server would
// refuse the request. Changing a property of our window tells us that time, for clients that
// request it.
bool EmptyClipboard::takeOwnership() {
  auto* const xcb = connection_.xcb();
  xcb_change_property(xcb, XCB_PROP_MODE_APPEND, connection_.window(),
                      connection_.atoms().timestamp, XCB_ATOM_INTEGER, 32, 0, nullptr);
  xcb_set_selection_owner(xcb, connection_.window(), connection_.atoms().clipboard,
                          XCB_CURRENT_TIME);
  const auto owner = ownerOf(connection_, connection_.atoms().clipboard);
  pump_.handleArrived();
  return owner == connection_.window();
}

bool EmptyClipboard::handle(const xcb_generic_event_t& event) {
  if (kindOf(event) == XCB_PROPERTY_NOTIFY &&
      as<xcb_property_notify_event_t>(event).window == connection_.window()) {
    since_ = as<xcb_property_notify_event_t>(event).time;
    return true;
  }
  if (kindOf(event) == XCB_SELECTION_CLEAR) {
    lost_();
    return true;
  }
  if (kindOf(event) != XCB_SELECTION_REQUEST) return false;
  answer(as<xcb_selection_request_event_t>(event));
  return true;
}

void EmptyClipboard::answer(const xcb_selection_request_event_t& request) {
  // Obsolete clients specify no property.
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

/// Answers only the targets that every owner must support, except MULTIPLE, which would have
/// nothing to combine.
bool EmptyClipboard::fulfil(const xcb_selection_request_event_t& request, xcb_atom_t property) {
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

/// The CLIPBOARD selection; after a copy in a terminal, the PRIMARY selection of that terminal.
class SelectionClipboard final : public Clipboard {
 public:
  explicit SelectionClipboard(std::shared_ptr<Session> session)
      : session_(std::move(session)),
        primary_(*session_),
        empty_(session_->connection, session_->pump,
               [this] { ownerChangesBeforeCopy_ = primary_.ownerChanges(); }),
        keystroke_(*session_) {}

  void clear() override {
    source_ = Source::kClipboard;
    // Another client may take it at the same moment. If that happens twice, the other client keeps
    // it.
    if (!empty_.takeOwnership() && !empty_.takeOwnership()) source_ = Source::kNothing;
  }

  [[nodiscard]] bool copySelection() override {
    if (!keystroke_.isPossible()) return false;
    focused_ = findFocusedWindow(session_->connection);
    if (linux_port::copiesWithCopyKey(focused_.names) &&
        keystroke_.isPossible(CopyChord::kCopyKey)) {
      type(CopyChord::kCopyKey);
    } else if (linux_port::isReadFromPrimary(focused_.names)) {
      source_ = Source::kPrimary;
    } else if (linux_port::isUnsupported(focused_.names)) {
      source_ = Source::kNothing;
    } else {
      if (linux_port::isWine(focused_.names)) waitForWine();
      type(CopyChord::kControlInsert);
    }
    return true;
  }

  [[nodiscard]] std::optional<std::string> text() override {
    if (source_ == Source::kNothing) return {};
    Connection& connection = session_->connection;
    xcb_atom_t selection = connection.atoms().clipboard;
    if (source_ == Source::kPrimary) {
      selection = XCB_ATOM_PRIMARY;
      if (!isOwnedByFocusedProgram(ownerOf(connection, selection))) return {};
    }
    // Nothing comes if nobody owns the selection, or if this program still does.
    auto text = readSelectionText(connection, session_->pump, selection);
    if (text && mayBeUnselected(*text)) return {};
    return text;
  }

 private:
  void type(CopyChord chord) {
    keystroke_.press(chord);
    keystroke_.release();
  }

  /// Wine requests the targets twice after it has lost the clipboard, and loses a copy that is made
  /// before it has finished. No event tells when it has.
  void waitForWine() {
    session_->pump.serveUntil(EventPump::Clock::now() + kWinePause, [] { return false; });
  }

  /// Whether PRIMARY is the selection of the focused window. A busy program takes PRIMARY some time
  /// after the click that selects, so this is checked as late as possible.
  [[nodiscard]] bool isOwnedByFocusedProgram(xcb_window_t owner) const {
    session_->pump.handleArrived();
    return owner != XCB_WINDOW_NONE && !primary_.isStaleIn(focused_.window) &&
           belongToSameProgram(session_->connection, focused_.window, owner);
  }

  /// Whether a copied text may be one that the application does not show as selected.
  [[nodiscard]] bool mayBeUnselected(const std::string& text) const {
    if (linux_port::mayBeCurrentLine(focused_.names, text)) return true;
    return linux_port::takesPrimaryAfterCopying(focused_.names) &&
           primary_.ownerChanges() == ownerChangesBeforeCopy_;
  }

  enum class Source {
    kClipboard,
    kPrimary,  ///< if the program of focused_ owns it
    kNothing,  ///< a text could be from before the clear
  };

  const std::shared_ptr<Session> session_;
  PrimarySelection primary_;
  EmptyClipboard empty_;
  CopyKeystroke keystroke_;
  Source source_ = Source::kClipboard;
  FocusedWindow focused_;                ///< the window whose selection is read
  unsigned ownerChangesBeforeCopy_ = 0;  ///< ownerChanges() when we lost CLIPBOARD
};

}  // namespace

std::shared_ptr<Clipboard> makeClipboard(const std::shared_ptr<Session>& session) {
  reserveCopyKeystroke(session->hotKeys);
  return std::make_shared<SelectionClipboard>(session);
}

void reserveCopyKeystroke(HotKeyEvents& hotKeys) {
  static_cast<HotKeyGrabs&>(hotKeys).reserve(
      [](const Keyboards& keyboards, xcb_keycode_t key, std::uint16_t modifiers) {
        return key == keyboards.typingMap().insert &&
               modifiers == keyboards.map().masks.bits[kControlModifier];
      });
}

}  // namespace seldial::platform::x11
