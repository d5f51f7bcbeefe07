// Fuzzes reading a selection of a hostile owner: wrong types and formats, properties that appear
// and disappear, answers to other requests, endless pieces, windows that are destroyed. The input
// is the script of the owner, see Owner. If the input begins with 'h', the owner is honest and
// offers the rest, which must be read exactly. Needs Xvfb.
#include <poll.h>
#include <xcb/xcb.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

#include "api/JSON.h"
#include "fuzz/Check.h"
#include "platform/linux/MainLoop.h"
#include "platform/linux/SelectionText.h"
#include "platform/x11/copy/SelectionTransfer.h"
#include "tests/support/desktop/XServer.h"

namespace {

using namespace seldial::platform::linux_port;
using namespace seldial::platform::x11;
using std::chrono::milliseconds;

constexpr std::size_t kMaxBytes = 4096;
constexpr milliseconds kHostileLimit{20};
constexpr std::chrono::seconds kHonestLimit{30};

/// The other client. It serves one request on its own thread.
class Owner {
 public:
  explicit Owner(const Atoms& atoms) : atoms_(atoms), xcb_(xcb_connect(nullptr, nullptr)) {
    CHECK(xcb_connection_has_error(xcb_) == 0);
    const auto* const screen = xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data;
    window_ = xcb_generate_id(xcb_);
    xcb_create_window(xcb_, 0, window_, screen->root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, 0,
                      0, nullptr);
  }

  void own(xcb_atom_t selection) {
    xcb_set_selection_owner(xcb_, window_, selection, XCB_CURRENT_TIME);
    synchronise();
  }

  void serve(std::string_view script) {
    over_ = false;
    thread_ = std::thread([this, script] {
      if (!awaitRequest()) return;
      script.substr(0, 1) == "h" ? transferHonestly(script.substr(1)) : runScript(script);
      xcb_flush(xcb_);
    });
  }

  /// The server must have executed all requests of the reader: an old request would be mistaken for
  /// one of the next input.
  void stop() {
    over_ = true;
    thread_.join();
    synchronise();
    while (const auto event = freed(xcb_poll_for_event(xcb_))) {
    }
  }

 private:
  void synchronise() {
    std::free(xcb_get_input_focus_reply(xcb_, xcb_get_input_focus(xcb_), nullptr));
  }

  bool awaitRequest() {
    return await(
        [](const xcb_generic_event_t& event) { return kindOf(event) == XCB_SELECTION_REQUEST; });
  }

  bool awaitDeletion() {
    return await([](const xcb_generic_event_t& event) {
      return kindOf(event) == XCB_PROPERTY_NOTIFY &&
             as<xcb_property_notify_event_t>(event).state == XCB_PROPERTY_DELETE;
    });
  }

  /// False if the reader has given up before such an event arrived.
  template <class Wanted>
  bool await(Wanted wanted) {
    xcb_flush(xcb_);
    for (;;) {
      while (const auto event = freed(xcb_poll_for_event(xcb_))) {
        if (kindOf(*event) == XCB_SELECTION_REQUEST) {
          request_ = as<xcb_selection_request_event_t>(*event);
        }
        if (wanted(*event)) return true;
      }
      if (over_) return false;
      pollfd descriptor{xcb_get_file_descriptor(xcb_), POLLIN, 0};
      poll(&descriptor, 1, 1);
    }
  }

  /// The first byte is the size of a piece in bytes; 0 for all at once.
  void transferHonestly(std::string_view input) {
    if (input.empty()) return notify(XCB_ATOM_NONE);
    const std::size_t size = static_cast<std::uint8_t>(input[0]);
    input.remove_prefix(1);
    if (size == 0) {
      put(XCB_PROP_MODE_REPLACE, atoms_.utf8String, 8, input);
      return notify(request_.property);
    }
    announcePieces();
    bool last = false;
    while (!last && awaitDeletion()) {
      last = input.empty();
      const auto piece = input.substr(0, size);
      put(XCB_PROP_MODE_REPLACE, atoms_.utf8String, 8, piece);
      input.remove_prefix(piece.size());
    }
  }

  /// Steps of four bytes: the action and its parameters.
  void runScript(std::string_view script) {
    for (; script.size() >= 4; script.remove_prefix(4)) {
      const std::string bytes(static_cast<std::uint8_t>(script[3]), script[2]);
      const auto how = static_cast<std::uint8_t>(script[1]);
      const xcb_atom_t types[] = {atoms_.utf8String, atoms_.utf8PlainText, XCB_ATOM_STRING,
                                  atoms_.incr,       XCB_ATOM_ATOM,        XCB_ATOM_NONE + 1};
      const std::uint8_t formats[] = {8, 16, 32};
      switch (static_cast<std::uint8_t>(script[0]) % 10) {
        case 0:
        case 1:
          put(how / 18 % 3, types[how % 6], formats[how / 6 % 3], bytes);
          break;
        case 2:
          notify(how % 3 == 0 ? request_.property : how);
          break;
        case 3:
          announcePieces();
          break;
        case 4:
          xcb_delete_property(xcb_, request_.requestor, request_.property);
          break;
        case 5:
          if (!awaitDeletion()) return;
          break;
        case 6:
          if (how == 0) xcb_destroy_window(xcb_, request_.requestor);
          break;
        case 7:
          forgeProperty(how);
          break;
        case 8:
          if (!awaitRequest()) return;
          break;
        default:
          xcb_set_selection_owner(xcb_, XCB_WINDOW_NONE, request_.selection, XCB_CURRENT_TIME);
      }
    }
  }

  void put(int mode, xcb_atom_t type, std::uint8_t format, std::string_view bytes) {
    xcb_change_property(xcb_, static_cast<std::uint8_t>(mode), request_.requestor,
                        request_.property, type, format,
                        static_cast<std::uint32_t>(bytes.size() / (format / 8U)), bytes.data());
  }

  void announcePieces() {
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(xcb_, request_.requestor, XCB_CW_EVENT_MASK, &events);
    put(XCB_PROP_MODE_REPLACE, atoms_.incr, 32, std::string_view("\0\0\0\0", 4));
    notify(request_.property);
  }

  void notify(xcb_atom_t property) {
    xcb_selection_notify_event_t event{};
    event.response_type = XCB_SELECTION_NOTIFY;
    event.requestor = request_.requestor;
    event.selection = request_.selection;
    event.target = request_.target;
    event.property = property;
    send(event);
  }

  void forgeProperty(std::uint8_t how) {
    xcb_property_notify_event_t event{};
    event.response_type = XCB_PROPERTY_NOTIFY;
    event.window = request_.requestor;
    event.atom = how % 2 == 0 ? request_.property : how;
    event.state = how % 4 < 2 ? XCB_PROPERTY_NEW_VALUE : XCB_PROPERTY_DELETE;
    send(event);
  }

  template <class Event>
  void send(const Event& event) {
    char bytes[32] = {};
    std::memcpy(bytes, &event, sizeof event);
    xcb_send_event(xcb_, 0, request_.requestor, XCB_EVENT_MASK_NO_EVENT, bytes);
  }

  const Atoms atoms_;
  xcb_connection_t* const xcb_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  xcb_selection_request_event_t request_{};
  std::atomic<bool> over_{false};
  std::thread thread_;
};

/// An X server, the reader and the owner. Shared by all inputs.
struct Desktop {
  Desktop() {
    setenv("DISPLAY", server.display().c_str(), 1);
    connection = Connection::open();
    CHECK(connection);
    pump = std::make_unique<EventPump>(*connection, loop, [] {});
    owner = std::make_unique<Owner>(connection->atoms());
  }

  seldial::tests::XServer server;
  MainLoop loop;
  std::unique_ptr<Connection> connection;
  std::unique_ptr<EventPump> pump;
  std::unique_ptr<Owner> owner;
};

void checkText(const std::string& bytes) {
  const std::string text = repairedUtf8(bytes);
  CHECK(seldial::isValidUTF8(text));
  CHECK(!seldial::isValidUTF8(bytes) || text == bytes);
}

void checkHonest(std::string_view input, const std::optional<SelectionAnswer>& answer) {
  const bool refused = input.empty();
  const auto text = refused ? input : input.substr(1);
  CHECK(answer.has_value() == (text.size() <= kMaxBytes));
  if (!answer) return;
  CHECK(answer->bytes == text);
  CHECK((answer->type == XCB_ATOM_NONE) == refused);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static auto* const desktop = new Desktop;
  const std::string_view script(reinterpret_cast<const char*>(data), size);
  const bool honest = script.substr(0, 1) == "h";
  const Atoms& atoms = desktop->connection->atoms();
  desktop->owner->own(atoms.clipboard);
  desktop->owner->serve(script);
  const auto end = EventPump::Clock::now() + (honest ? EventPump::Clock::duration(kHonestLimit)
                                                     : EventPump::Clock::duration(kHostileLimit));
  std::optional<SelectionAnswer> answer;
  {
    SelectionTransfer transfer(*desktop->connection, *desktop->pump, kMaxBytes, end);
    answer = transfer.ask(atoms.clipboard, atoms.utf8String, end);
    if (answer && !honest) answer = transfer.ask(atoms.clipboard, XCB_ATOM_STRING, end);
  }
  desktop->connection->synchronise();
  desktop->owner->stop();
  CHECK(!desktop->connection->lost());
  if (honest) checkHonest(script.substr(1), answer);
  if (answer) {
    CHECK(answer->bytes.size() <= kMaxBytes);
    checkText(answer->bytes);
  }
  return 0;
}
