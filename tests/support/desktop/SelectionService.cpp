#include "tests/support/desktop/SelectionService.h"

#include <algorithm>

#include "tests/support/desktop/Xcb.h"

namespace seldial::tests {
namespace {

/// Below the server's limit of one request.
constexpr std::size_t kLargestPiece = std::size_t{4} * 1024 * 1024;

void putBytes(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
              xcb_atom_t type, const std::string& bytes) {
  auto mode = static_cast<std::uint8_t>(XCB_PROP_MODE_REPLACE);
  std::size_t sent = 0;
  do {
    const auto size = std::min(kLargestPiece, bytes.size() - sent);
    xcb_change_property(connection, mode, window, property, type, 8,
                        static_cast<std::uint32_t>(size), bytes.data() + sent);
    mode = XCB_PROP_MODE_APPEND;
    sent += size;
  } while (sent < bytes.size());
}

}  // namespace

Answers answersWith(const std::string& text, std::size_t chunkSize) {
  Answers answers;
  answers.offers = {{"UTF8_STRING", "UTF8_STRING", text},
                    {"text/plain;charset=utf-8", "text/plain;charset=utf-8", text}};
  answers.chunkSize = chunkSize;
  return answers;
}

bool SelectionService::own(xcb_atom_t selection, xcb_timestamp_t time, Answers answers) {
  xcb_set_selection_owner(connection_, window_, selection, time);
  const auto cookie = xcb_get_selection_owner(connection_, selection);
  const auto reply = freed(xcb_get_selection_owner_reply(connection_, cookie, nullptr));
  if (!reply || reply->owner != window_) return false;
  owned_[selection] = std::move(answers);
  return true;
}

void SelectionService::handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7F) {
    case XCB_SELECTION_REQUEST:
      answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
      break;
    case XCB_SELECTION_CLEAR:
      owned_.erase(reinterpret_cast<const xcb_selection_clear_event_t&>(event).selection);
      break;
    case XCB_PROPERTY_NOTIFY:
      sendChunk(reinterpret_cast<const xcb_property_notify_event_t&>(event));
      break;
    default:
      break;
  }
}

void SelectionService::answer(const xcb_selection_request_event_t& request) {
  const auto owned = owned_.find(request.selection);
  if (owned != owned_.end() && owned->second.never) {
    owned->second.whenSilent();
    return;
  }
  const auto property = request.property != XCB_ATOM_NONE ? request.property : request.target;
  xcb_selection_notify_event_t notify{};
  notify.response_type = XCB_SELECTION_NOTIFY;
  notify.requestor = request.requestor;
  notify.selection = request.selection;
  notify.target = request.target;
  notify.time = request.time;
  notify.property = putProperty(request, property) ? property : xcb_atom_t{XCB_ATOM_NONE};
  char bytes[32] = {};
  std::copy_n(reinterpret_cast<const char*>(&notify), sizeof notify, bytes);
  xcb_send_event(connection_, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, bytes);
  xcb_flush(connection_);
}

bool SelectionService::putProperty(const xcb_selection_request_event_t& request,
                                   xcb_atom_t property) {
  const auto owned = owned_.find(request.selection);
  if (owned == owned_.end()) return false;
  const Answers& answers = owned->second;
  if (request.target == atom(connection_, "TARGETS")) {
    putTargets(request, property, answers);
    return true;
  }
  for (const auto& offer : answers.offers) {
    if (atom(connection_, offer.target) != request.target) continue;
    putOffer(request, property, offer, answers);
    return true;
  }
  return false;
}

void SelectionService::putTargets(const xcb_selection_request_event_t& request, xcb_atom_t property,
                                  const Answers& answers) {
  std::vector<xcb_atom_t> targets{atom(connection_, "TARGETS")};
  for (const auto& offer : answers.offers) targets.push_back(atom(connection_, offer.target));
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, request.requestor, property,
                      XCB_ATOM_ATOM, 32, static_cast<std::uint32_t>(targets.size()),
                      targets.data());
}

void SelectionService::putOffer(const xcb_selection_request_event_t& request, xcb_atom_t property,
                                const Offer& offer, const Answers& answers) {
  const auto type = atom(connection_, offer.type);
  if (answers.chunkSize == 0) {
    putBytes(connection_, request.requestor, property, type, offer.bytes);
    return;
  }
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_, request.requestor, XCB_CW_EVENT_MASK, &events);
  const std::uint32_t hint = 0;
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, request.requestor, property,
                      atom(connection_, "INCR"), 32, 1, &hint);
  transfers_[{request.requestor, property}] = {type, offer.bytes, answers.chunkSize,
                                               answers.chunksUntilSilence, answers.whenSilent};
}

void SelectionService::sendChunk(const xcb_property_notify_event_t& event) {
  const auto found = transfers_.find({event.window, event.atom});
  if (event.state != XCB_PROPERTY_DELETE || found == transfers_.end()) return;
  Transfer& transfer = found->second;
  if (transfer.chunksUntilSilence-- == 0) {
    silent_ = true;
    transfer.whenSilent();
    transfers_.erase(found);
    return;
  }
  const auto chunk = transfer.left.substr(0, transfer.chunkSize);
  transfer.left.erase(0, chunk.size());
  putBytes(connection_, event.window, event.atom, transfer.type, chunk);
  xcb_flush(connection_);
  if (chunk.empty()) transfers_.erase(found);
}

}  // namespace seldial::tests
