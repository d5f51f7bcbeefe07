#include "tests/support/desktop/ClipboardManager.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <xcb/xfixes.h>

#include <utility>

#include "tests/support/desktop/Xcb.h"

namespace seldial::tests {

ClipboardManager::ClipboardManager(const std::string& display, std::string text)
    : text_(std::move(text)),
      connection_(connectToServer(display)),
      window_(xcb_generate_id(connection_)),
      clipboard_(atom(connection_, "CLIPBOARD")),
      selections_(std::make_unique<SelectionService>(connection_, window_)),
      stop_(eventfd(0, EFD_CLOEXEC)) {
  xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, rootOf(connection_), 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  const auto version = xcb_xfixes_query_version(connection_, 5, 0);
  freed(xcb_xfixes_query_version_reply(connection_, version, nullptr));
  firstEvent_ = xcb_get_extension_data(connection_, &xcb_xfixes_id)->first_event;
  xcb_xfixes_select_selection_input(connection_, window_, clipboard_,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                        XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
  put();
  thread_ = std::thread([this] { run(); });
}

ClipboardManager::~ClipboardManager() {
  eventfd_write(stop_, 1);
  thread_.join();
  close(stop_);
  xcb_disconnect(connection_);
}

void ClipboardManager::put() {
  selections_->own(clipboard_, XCB_CURRENT_TIME, answersWith(text_));
}

void ClipboardManager::run() {
  pollfd entries[] = {{stop_, POLLIN, 0}, {xcb_get_file_descriptor(connection_), POLLIN, 0}};
  while (entries[0].revents == 0 && xcb_connection_has_error(connection_) == 0) {
    while (const auto event = freed(xcb_poll_for_event(connection_))) {
      selections_->handle(*event);
      if ((event->response_type & 0x7F) != firstEvent_ + XCB_XFIXES_SELECTION_NOTIFY) continue;
      const auto* const notify =
          reinterpret_cast<xcb_xfixes_selection_notify_event_t*>(event.get());
      if (notify->owner != XCB_WINDOW_NONE) continue;
      put();
      ++restoreCount_;
    }
    poll(entries, 2, -1);
  }
}

}  // namespace seldial::tests
