#include "platform/x11/Connection.h"

#include <xcb/xinput.h>
#include <xcb/xtest.h>

#include <array>
#include <cstring>
#include <future>
#include <utility>

#include "platform/BackgroundQueue.h"
#include "platform/Output.h"

namespace seldial::platform::x11 {
namespace {

struct AtomName {
  const char* name;
  xcb_atom_t Atoms::*atom;
};

constexpr std::array kAtomNames{
    AtomName{"CLIPBOARD", &Atoms::clipboard},
    AtomName{"TARGETS", &Atoms::targets},
    AtomName{"TIMESTAMP", &Atoms::timestamp},
    AtomName{"UTF8_STRING", &Atoms::utf8String},
    AtomName{"text/plain;charset=utf-8", &Atoms::utf8PlainText},
    AtomName{"INCR", &Atoms::incr},
    AtomName{"XTEST Device", &Atoms::xtestDevice},
};

}  // namespace

// XCB waits without a time limit. So it waits on another thread, which is abandoned when the limit
// has passed.
std::unique_ptr<Connection> Connection::open(std::chrono::milliseconds limit,
                                             const std::string& consequence) {
  const char* const display = std::getenv("DISPLAY");
  if (display == nullptr || *display == '\0') return nullptr;
  const auto task = std::make_shared<std::packaged_task<OpenResult()>>(
      [name = std::string(display), consequence] { return tryToOpen(name, consequence); });
  auto future = task->get_future();
  sharedBackgroundQueue()->async([task] { (*task)(); });
  if (future.wait_for(limit) != std::future_status::ready) {
    printError(std::string("seldial: the X server at ") + display + " does not answer; " +
               consequence);
    return nullptr;
  }
  auto [connection, failure] = future.get();
  if (!connection) printError("seldial: " + failure);
  return std::move(connection);
}

Connection::OpenResult Connection::tryToOpen(const std::string& display,
                                             const std::string& consequence) {
  std::unique_ptr<Connection> connection(new Connection(xcb_connect(display.c_str(), nullptr)));
  if (connection->lost()) return {nullptr, "no X server at " + display};
  const char* const missing = connection->handshake();
  if (missing == nullptr) return {std::move(connection), {}};
  return {nullptr, std::string("the X server lacks ") + missing + "; " + consequence};
}

Connection::~Connection() {
  xcb_disconnect(xcb_);
}

void Connection::synchronise() const {
  freed(xcb_get_input_focus_reply(xcb_, xcb_get_input_focus(xcb_), nullptr));
}

// A round trip costs more than a request, so requests are sent together if possible.
/// Returns what the server lacks; null if it lacks nothing.
const char* Connection::handshake() {
  root_ = xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data->root;
  for (auto* const extension : {&xcb_xkb_id, &xcb_input_id, &xcb_test_id}) {
    xcb_prefetch_extension_data(xcb_, extension);
  }
  createWindow();
  internAtoms();
  const char* const missing = missingExtension();
  return missing != nullptr ? missing : missingAbility();
}

void Connection::createWindow() {
  window_ = xcb_generate_id(xcb_);
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(xcb_, XCB_COPY_FROM_PARENT, window_, root_, -1, -1, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
}

void Connection::internAtoms() {
  std::array<xcb_intern_atom_cookie_t, kAtomNames.size()> cookies{};
  for (std::size_t i = 0; i < cookies.size(); ++i) {
    const char* const name = kAtomNames[i].name;
    cookies[i] = xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
  }
  for (std::size_t i = 0; i < cookies.size(); ++i) {
    const auto reply = freed(xcb_intern_atom_reply(xcb_, cookies[i], nullptr));
    if (reply) atoms_.*kAtomNames[i].atom = reply->atom;
  }
}

const char* Connection::missingExtension() {
  const auto* const xtest = xcb_get_extension_data(xcb_, &xcb_test_id);
  if (xtest == nullptr || xtest->present == 0) return "XTEST";
  const auto* const xkb = xcb_get_extension_data(xcb_, &xcb_xkb_id);
  if (xkb == nullptr || xkb->present == 0) return "XKEYBOARD";
  const auto* const input = xcb_get_extension_data(xcb_, &xcb_input_id);
  if (input == nullptr || input->present == 0) return "XInputExtension";
  xkbEvent_ = xkb->first_event;
  inputExtension_ = input->major_opcode;
  return nullptr;
}

const char* Connection::missingAbility() {
  const std::uint32_t detectable = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
  const auto use = xcb_xkb_use_extension(xcb_, 1, 0);
  const auto flags =
      xcb_xkb_per_client_flags(xcb_, XCB_XKB_ID_USE_CORE_KBD, detectable, detectable, 0, 0, 0);
  const auto input = xcb_input_xi_query_version(xcb_, 2, 2);
  const auto used = freed(xcb_xkb_use_extension_reply(xcb_, use, nullptr));
  const auto set = freed(xcb_xkb_per_client_flags_reply(xcb_, flags, nullptr));
  const auto version = freed(xcb_input_xi_query_version_reply(xcb_, input, nullptr));
  if (!used || used->supported == 0) return "XKEYBOARD 1.0";
  if (!set || (set->value & detectable) == 0) return "detectable auto-repeat";
  // Before 2.1 raw key events stop while a key is grabbed.
  if (!version || version->major_version != 2 || version->minor_version < 1) return "XInput 2.1";
  return nullptr;
}

void Connection::selectRawInput(std::uint32_t events, bool selected) {
  rawEvents_ = selected ? rawEvents_ | events : rawEvents_ & ~events;
  selectInput(*this, XCB_INPUT_DEVICE_ALL_MASTER, rawEvents_);
}

void selectInput(const Connection& connection, std::uint16_t devices, std::uint32_t events) {
  const struct {
    xcb_input_event_mask_t head;
    std::uint32_t mask;
  } selection{{devices, 1}, events};
  xcb_input_xi_select_events(connection.xcb(), connection.root(), 1, &selection.head);
}

int inputEventType(const Connection& connection, const xcb_generic_event_t& event) {
  const auto& generic = as<xcb_ge_generic_event_t>(event);
  const bool input =
      kindOf(event) == XCB_GE_GENERIC && generic.extension == connection.inputExtension();
  return input ? generic.event_type : 0;
}

}  // namespace seldial::platform::x11
