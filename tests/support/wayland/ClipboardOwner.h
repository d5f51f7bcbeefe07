// Another program that owns the clipboard and the primary selection, like a clipboard manager.
#pragma once

#include <string>
#include <vector>

#include "tests/support/wayland/WaylandClient.h"

struct zwlr_data_control_device_v1;
struct zwlr_data_control_manager_v1;
struct zwlr_data_control_offer_v1;
struct zwlr_data_control_source_v1;

namespace seldial::tests {

class ClipboardOwner final : public WaylandClient {
 public:
  explicit ClipboardOwner(const std::string& socketPath);
  ~ClipboardOwner();
  ClipboardOwner(const ClipboardOwner&) = delete;
  ClipboardOwner& operator=(const ClipboardOwner&) = delete;

  /// Puts this text on both.
  void own(const std::string& text);
  /// Waits until another program has taken the clipboard.
  void waitForLoss() const;

  // Called by libwayland, under the lock.
  void send(int pipe) const;
  void cancelled(zwlr_data_control_source_v1* source);
  std::vector<zwlr_data_control_offer_v1*> offers;  ///< to be destroyed at the end

 private:
  zwlr_data_control_source_v1* makeSource();

  wl_seat* seat_;
  zwlr_data_control_manager_v1* manager_;
  zwlr_data_control_device_v1* device_;
  zwlr_data_control_source_v1* clipboard_ = nullptr;
  zwlr_data_control_source_v1* primary_ = nullptr;
  std::string text_;
};

}  // namespace seldial::tests
