#include "platform/x11/copy/SelectionTransfer.h"

#include <algorithm>
#include <utility>

#include "platform/linux/SelectionText.h"

namespace seldial::platform::x11 {
namespace {

/// How long an owner may take for its first answer, whatever the number of requests, and between
/// two pieces.
constexpr std::chrono::seconds kTimeout{1};

/// How long the whole transfer may take: the main thread waits, and an owner could send byte by
/// byte.
constexpr std::chrono::seconds kTimeLimit{5};

/// The longest text that is read.
constexpr std::size_t kMaxBytes = std::size_t{256} * 1024 * 1024;

}  // namespace

xcb_window_t ownerOf(const Connection& connection, xcb_atom_t selection) {
  auto* const xcb = connection.xcb();
  const auto cookie = xcb_get_selection_owner(xcb, selection);
  const auto reply = freed(xcb_get_selection_owner_reply(xcb, cookie, nullptr));
  return reply ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
}

std::optional<std::string> readSelectionText(Connection& connection, EventPump& pump,
                                             xcb_atom_t selection) {
  const Atoms& atoms = connection.atoms();
  const auto begin = EventPump::Clock::now();
  const auto deadline = begin + kTimeout;
  SelectionTransfer transfer(connection, pump, kMaxBytes, begin + kTimeLimit);
  // STRING last: some owners use escape sequences in it for characters that Latin-1 lacks.
  for (const auto target : {atoms.utf8String, atoms.utf8PlainText, xcb_atom_t{XCB_ATOM_STRING}}) {
    auto answer = transfer.ask(selection, target, deadline);
    if (!answer) return {};
    answer->bytes = linux_port::withoutTerminator(std::move(answer->bytes));
    // An owner may answer with a type other than the requested one; the actual type counts.
    if (answer->type == XCB_ATOM_STRING) return linux_port::utf8FromLatin1(answer->bytes);
    if (answer->type == atoms.utf8String || answer->type == atoms.utf8PlainText) {
      return linux_port::repairedUtf8(std::move(answer->bytes));
    }
  }
  return {};
}

SelectionTransfer::SelectionTransfer(Connection& connection, EventPump& pump, std::size_t maxBytes,
                                     EventPump::Clock::time_point end)
    : connection_(connection),
      pump_(pump),
      maxBytes_(maxBytes),
      end_(end),
      window_(xcb_generate_id(connection.xcb())) {
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection_.xcb(), XCB_COPY_FROM_PARENT, window_, connection_.root(), -1, -1, 1,
                    1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                    &events);
  pump_.add(*this);
}

SelectionTransfer::~SelectionTransfer() {
  pump_.remove(*this);
  xcb_destroy_window(connection_.xcb(), window_);
}

std::optional<SelectionAnswer> SelectionTransfer::ask(xcb_atom_t selection, xcb_atom_t target,
                                                      EventPump::Clock::time_point deadline) {
  target_ = target;
  answered_.reset();
  // XCB_CURRENT_TIME asks the current owner, whenever it took the selection.
  xcb_convert_selection(connection_.xcb(), window_, selection, target, target, XCB_CURRENT_TIME);
  if (!pump_.serveUntil(deadline, [this] { return answered_.has_value(); })) return {};
  if (*answered_ == XCB_ATOM_NONE) return SelectionAnswer{};
  pieceArrived_ = false;  // the property that announces the pieces is not one of them
  auto answer = takeProperty();
  return answer && answer->type == connection_.atoms().incr ? takePieces() : answer;
}

/// Reads and deletes the property; deleting it asks the owner for the next piece.
std::optional<SelectionAnswer> SelectionTransfer::takeProperty() {
  auto* const xcb = connection_.xcb();
  const auto cookie = xcb_get_property(xcb, 1, window_, *answered_, XCB_ATOM_ANY, 0,
                                       static_cast<std::uint32_t>(maxBytes_ / 4));
  const auto reply = freed(xcb_get_property_reply(xcb, cookie, nullptr));
  if (!reply || reply->bytes_after != 0) return {};
  return SelectionAnswer{reply->type,
                         {static_cast<const char*>(xcb_get_property_value(reply.get())),
                          static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))}};
}

std::optional<SelectionAnswer> SelectionTransfer::takePieces() {
  SelectionAnswer whole;
  for (;;) {
    const auto deadline = std::min(EventPump::Clock::now() + kTimeout, end_);
    if (!pump_.serveUntil(deadline, [this] { return std::exchange(pieceArrived_, false); }))
      return {};
    const auto piece = takeProperty();
    if (!piece || piece->bytes.size() > maxBytes_ - whole.bytes.size()) return {};
    if (piece->type == XCB_ATOM_NONE) continue;  // already read with the previous piece
    if (whole.type == XCB_ATOM_NONE) whole.type = piece->type;
    if (piece->bytes.empty()) return whole;
    whole.bytes += piece->bytes;
  }
}

bool SelectionTransfer::handle(const xcb_generic_event_t& event) {
  if (kindOf(event) == XCB_SELECTION_NOTIFY) {
    const auto& notify = as<xcb_selection_notify_event_t>(event);
    if (notify.requestor != window_ || notify.target != target_) return false;
    answered_ = notify.property;
    return true;
  }
  if (kindOf(event) != XCB_PROPERTY_NOTIFY) return false;
  const auto& change = as<xcb_property_notify_event_t>(event);
  if (change.window != window_) return false;
  if (change.state == XCB_PROPERTY_NEW_VALUE && answered_ == change.atom) pieceArrived_ = true;
  return true;
}

}  // namespace seldial::platform::x11
