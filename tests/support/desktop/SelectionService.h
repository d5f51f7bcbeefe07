// How a test's client answers those who ask for a selection that it owns: whole, in pieces, not at
// all, or not to the end.
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

/// One form in which a selection is offered: what is asked for, what the answer calls itself.
struct Offer {
  std::string target;
  std::string type;
  std::string bytes;
};

struct Answers {
  std::vector<Offer> offers;  ///< anything else is refused
  bool never = false;         ///< as a stopped program
  std::size_t chunkSize = 0;  ///< above 0: handed over incrementally, so many bytes at a time
  std::size_t chunksUntilSilence = std::numeric_limits<std::size_t>::max();
  std::function<void()> whenSilent = [] {};  ///< called where it does not go on
};

/// A text as today's toolkits offer it.
Answers answersWith(const std::string& text, std::size_t chunkSize = 0);

/// Of one connection; used on the thread that reads its events.
class SelectionService {
 public:
  SelectionService(xcb_connection_t* connection, xcb_window_t window)
      : connection_(connection), window_(window) {}

  /// Takes the selection and answers so from now on. False when the server refused.
  bool own(xcb_atom_t selection, xcb_timestamp_t time, Answers answers);

  void handle(const xcb_generic_event_t& event);

  /// It has stopped in the middle of an incremental transfer.
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
