#include "tests/support/desktop/XClient.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <future>
#include <stdexcept>

#include "tests/support/Waiting.h"
#include "tests/support/desktop/Keys.h"
#include "tests/support/desktop/Xcb.h"

namespace seldial::tests {

XClient::XClient(const std::string& display, XClientSettings settings)
    : settings_(std::move(settings)),
      connection_(connectToServer(display)),
      wakeUp_(eventfd(0, EFD_CLOEXEC)) {
  createWindow();
  show();
  clipboard_ = atom(connection_, "CLIPBOARD");
  selections_ = std::make_unique<SelectionService>(connection_, window_);
  thread_ = std::thread([this] { run(); });
}

XClient::~XClient() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  eventfd_write(wakeUp_, 1);
  thread_.join();
  close(wakeUp_);
}

void XClient::createWindow() {
  const auto root = rootOf(connection_);
  const std::uint32_t events = XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_KEY_RELEASE |
                               XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE;
  window_ = focus_ = xcb_generate_id(connection_);
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, root, 0, 0, 300, 100, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                    &events);
  const std::string wmClass = settings_.wmInstance + '\0' + settings_.wmClass + '\0';
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_CLASS,
                      XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(wmClass.size()),
                      wmClass.data());
  if (!settings_.machine.empty()) {
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_CLIENT_MACHINE,
                        XCB_ATOM_STRING, 8, static_cast<std::uint32_t>(settings_.machine.size()),
                        settings_.machine.data());
  }
  if (!settings_.focusOnChild) return;
  focus_ = xcb_generate_id(connection_);
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, focus_, window_, 0, 0, 300, 100, 0,
                    XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                    &events);
  xcb_map_window(connection_, focus_);
}

void XClient::show() {
  xcb_map_window(connection_, window_);
  xcb_flush(connection_);
  for (bool shown = false; !shown;) {
    const auto event = freed(xcb_wait_for_event(connection_));
    if (!event) throw std::runtime_error("the X server is gone");
    shown = (event->response_type & 0x7F) == XCB_MAP_NOTIFY &&
            reinterpret_cast<xcb_map_notify_event_t*>(event.get())->window == window_;
  }
  xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, focus_, XCB_CURRENT_TIME);
  synchronise(connection_);
}

void XClient::takeFocus() {
  perform([this] {
    xcb_set_input_focus(connection_, XCB_INPUT_FOCUS_PARENT, focus_, XCB_CURRENT_TIME);
    synchronise(connection_);
  });
}

void XClient::own(const std::string& selection, Answers answers) {
  perform([this, selection, answers = std::move(answers)] {
    selections_->own(atom(connection_, selection), XCB_CURRENT_TIME, answers);
  });
}

void XClient::grabKeyboard(bool grabbed) {
  perform([this, grabbed] {
    if (grabbed) {
      const auto cookie = xcb_grab_keyboard(connection_, 0, window_, XCB_CURRENT_TIME,
                                            XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
      freed(xcb_grab_keyboard_reply(connection_, cookie, nullptr));
    } else {
      xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
      synchronise(connection_);
    }
  });
}

std::vector<KeyRecord> XClient::keys() const {
  const std::lock_guard lock(mutex_);
  return keys_;
}

int XClient::copies() const {
  const std::lock_guard lock(mutex_);
  return copies_;
}

void XClient::waitForKeys(const std::function<bool(const std::vector<KeyRecord>&)>& enough) const {
  std::unique_lock lock(mutex_);
  if (!changed_.wait_for(lock, kTimeLimit, [&] { return enough(keys_); })) {
    throw std::runtime_error("the window did not receive the awaited keys");
  }
}

void XClient::waitForRelease(std::uint8_t key) const {
  waitForKeys([key](const std::vector<KeyRecord>& keys) {
    return std::any_of(keys.begin(), keys.end(), [key](const KeyRecord& record) {
      return record.key == key && !record.pressed;
    });
  });
}

void XClient::perform(Task task) {
  std::promise<void> done;
  {
    const std::lock_guard lock(mutex_);
    tasks_.emplace_back([&] {
      task();
      done.set_value();
    });
  }
  eventfd_write(wakeUp_, 1);
  if (done.get_future().wait_for(kTimeLimit) != std::future_status::ready) {
    throw std::runtime_error("the X client is gone");
  }
}

void XClient::run() {
  pollfd entries[] = {{wakeUp_, POLLIN, 0}, {xcb_get_file_descriptor(connection_), POLLIN, 0}};
  for (bool stopping = false; !stopping && xcb_connection_has_error(connection_) == 0;) {
    while (const auto event = freed(xcb_poll_for_event(connection_))) handle(*event);
    if (settings_.endsWhenSilent && selections_->silent()) break;
    poll(entries, 2, -1);
    if ((entries[0].revents & POLLIN) != 0) runTasks();
    const std::lock_guard lock(mutex_);
    stopping = stopping_;
  }
  xcb_disconnect(connection_);
}

void XClient::runTasks() {
  eventfd_t count = 0;
  eventfd_read(wakeUp_, &count);
  std::vector<Task> tasks;
  {
    const std::lock_guard lock(mutex_);
    tasks.swap(tasks_);
  }
  for (const auto& task : tasks) task();
}

void XClient::handle(const xcb_generic_event_t& event) {
  const auto type = event.response_type & 0x7F;
  if (type == XCB_KEY_PRESS || type == XCB_KEY_RELEASE) {
    key(reinterpret_cast<const xcb_key_press_event_t&>(event), type == XCB_KEY_PRESS);
  } else {
    selections_->handle(event);
  }
}

void XClient::key(const xcb_key_press_event_t& event, bool pressed) {
  const unsigned chord = event.state & (kStateShift | kStateControl | kStateAlt | kStateSuper);
  const bool isCopy = settings_.copyKey ? event.detail == kKeyCopy && chord == 0
                                        : event.detail == kKeyInsert && chord == kStateControl;
  const bool copy = settings_.copies && pressed && isCopy;
  if (copy) selections_->own(clipboard_, event.time, settings_.copy);
  if (copy && settings_.takesPrimary) {
    selections_->own(XCB_ATOM_PRIMARY, event.time, settings_.copy);
  }
  const std::lock_guard lock(mutex_);
  if (copy) ++copies_;
  keys_.push_back({event.detail, event.state, pressed});
  changed_.notify_all();
}

}  // namespace seldial::tests
