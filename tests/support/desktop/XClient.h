// The text window of another program: it has the focus, records the keys that it receives, and
// copies on Ctrl+Insert, like any editor. It runs on its own thread and connection.
#pragma once

#include <xcb/xcb.h>

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "tests/support/desktop/SelectionService.h"

namespace seldial::tests {

struct XClientSettings {
  std::string wmInstance = "editor";
  std::string wmClass = "Editor";
  Answers copy = answersWith("+31 20 123 4567");  ///< the text that a copy puts on the clipboard
  bool copies = true;           ///< whether Ctrl+Insert copies; other chords never do
  bool copyKey = false;         ///< whether the Copy key copies instead
  bool takesPrimary = false;    ///< whether it takes PRIMARY after copying
  bool endsWhenSilent = false;  ///< the program dies in the middle of an incremental transfer
  bool focusOnChild = false;    ///< the focus is on a child window, which has no class of its own
  std::string machine;          ///< WM_CLIENT_MACHINE, unless empty
};

/// A key event as the window received it.
struct KeyRecord {
  std::uint8_t key = 0;
  unsigned state = 0;  ///< kState bits before the event
  bool pressed = false;
};

class XClient {
 public:
  /// Returns once its window is mapped and has the focus.
  explicit XClient(const std::string& display, XClientSettings settings = {});
  /// Also destroys its windows and gives up its selections.
  ~XClient();
  XClient(const XClient&) = delete;
  XClient& operator=(const XClient&) = delete;

  void takeFocus();

  /// Takes a selection ("CLIPBOARD", "PRIMARY") now.
  void own(const std::string& selection, Answers answers);

  /// Grabs or releases the whole keyboard, like an open menu.
  void grabKeyboard(bool grabbed);

  [[nodiscard]] std::vector<KeyRecord> keys() const;

  /// Waits until the received keys satisfy `enough`; throws std::runtime_error after kTimeLimit.
  void waitForKeys(const std::function<bool(const std::vector<KeyRecord>&)>& enough) const;

  /// Waits until it has received the release of `key`.
  void waitForRelease(std::uint8_t key) const;

  [[nodiscard]] int copies() const;
  [[nodiscard]] xcb_window_t window() const { return window_; }

 private:
  using Task = std::function<void()>;

  void createWindow();
  void show();
  void run();
  void runTasks();
  void perform(Task task);
  void handle(const xcb_generic_event_t& event);
  void key(const xcb_key_press_event_t& event, bool pressed);

  const XClientSettings settings_;
  xcb_connection_t* connection_;
  xcb_window_t window_ = 0;
  xcb_window_t focus_ = 0;
  xcb_atom_t clipboard_ = 0;
  std::unique_ptr<SelectionService> selections_;
  int wakeUp_;

  mutable std::mutex mutex_;  ///< guards everything below
  mutable std::condition_variable changed_;
  std::vector<Task> tasks_;
  std::vector<KeyRecord> keys_;
  int copies_ = 0;
  bool stopping_ = false;

  std::thread thread_;
};

}  // namespace seldial::tests
