// How a test's client answers requests for a selection that it owns: completely, in pieces, not at
// all, or incompletely.
#pragma once

#include <xcb/xcb.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace seldial::tests {

/// One form in which a selection is offered: the requested target and the type of the answer.
struct Offer {
  std::string target;
  std::string type;
  std::string bytes;
};

struct Answers {
  std::vector<Offer> offers;  ///< all other targets are refused
  bool never = false;         ///< does not answer, like a stopped program
  std::size_t chunkSize = 0;  ///< above 0: transferred incrementally, in pieces of this many bytes
  std::size_t chunksUntilSilence = std::numeric_limits<std::size_t>::max();
  std::function<void()> whenSilent = [] {};  ///< called when the transfer stops in the middle
};

/// A text, offered as current toolkits do.
Answers answersWith(const std::string& text, std::size_t chunkSize = 0);

/// The selections of one connection. Use it on the thread that reads the events.
class SelectionService {
 public:
  SelectionService(xcb_connection_t* connection, xcb_window_t window)
      : connection_(connection), window_(window) {}

  /// Takes the selection and answers with `answers` from now on. False if the server refused.
  bool own(xcb_atom_t selection, xcb_timestamp_t time, Answers answers);

  void handle(const xcb_generic_event_t& event);

  /// Whether it has stopped in the middle of an incremental transfer.
  [[nodiscard]] bool silent() const { return silent_; }

 private:
  struct Transfer {
    xcb_atom_t type = XCB_ATOM_NONE;
    std::string left;
    std::size_t chunkSize = 0;
    std::size_t chunksUntilSilence = 0;
    std::function<void()> whenSilent;
  };

  void answer(const xcb_selection_request_event_t& request);
  bool putProperty(const xcb_selection_request_event_t& request, xcb_atom_t property);
  void putOffer(const xcb_selection_request_event_t& request, xcb_atom_t property,
                const Offer& offer, const Answers& answers);
  void putTargets(const xcb_selection_request_event_t& request, xcb_atom_t property,
                  const Answers& answers);
  void sendChunk(const xcb_property_notify_event_t& event);

  xcb_connection_t* connection_;
  xcb_window_t window_;
  std::map<xcb_atom_t, Answers> owned_;
  std::map<std::pair<xcb_window_t, xcb_atom_t>, Transfer> transfers_;
  bool silent_ = false;
};

}  // namespace seldial::tests
