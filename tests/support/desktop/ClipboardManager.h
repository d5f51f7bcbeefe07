// A clipboard manager that never leaves the clipboard empty: as soon as nobody owns the clipboard,
// it restores the previous text.
#pragma once

#include <xcb/xcb.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>

#include "tests/support/desktop/SelectionService.h"

namespace seldial::tests {

/// Runs on its own thread and connection.
class ClipboardManager {
 public:
  /// Returns once it owns the clipboard with `text`.
  ClipboardManager(const std::string& display, std::string text);
  ~ClipboardManager();
  ClipboardManager(const ClipboardManager&) = delete;
  ClipboardManager& operator=(const ClipboardManager&) = delete;

  /// How often it has restored the text.
  [[nodiscard]] int restoreCount() const { return restoreCount_; }

 private:
  void run();
  void put();

  const std::string text_;
  xcb_connection_t* connection_;
  xcb_window_t window_;
  xcb_atom_t clipboard_;
  std::unique_ptr<SelectionService> selections_;
  std::uint8_t firstEvent_ = 0;
  std::atomic<int> restoreCount_{0};
  int stop_;
  std::thread thread_;
};

}  // namespace seldial::tests
