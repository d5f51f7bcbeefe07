// A compositor with ext_data_control_manager_v1, the data control of newer compositors, and an
// application that copies.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/support/wayland/BareCompositor.h"

namespace seldial::tests {

/// Serves one client. A client that uses the older data control instead is disconnected.
class ExtDataControl {
 public:
  explicit ExtDataControl(const std::string& socketPath);

  /// The types that the client itself put on the clipboard; nothing when it does not own it.
  [[nodiscard]] std::optional<std::vector<std::string>> offeredTypes();

  /// Another program copies a text to the clipboard.
  void copy(const std::string& text);
  /// Another program puts something without a text on the clipboard.
  void copyNoText();
  /// Another program reads the client's clipboard, with the first of its types.
  void readClipboard();
  /// Another program does so from now on, each time the client takes it.
  void readEachClipboard();
  /// Another program's text is selected.
  void select(const std::string& text);

  /// The text that the owner of the clipboard or selection gives from now on.
  void change(const std::string& text);

  /// How often the client has requested a text.
  [[nodiscard]] int requests();

  /// How many offers the client has not destroyed.
  [[nodiscard]] int offers();

  // Called by libwayland.
  void deviceMade(wl_resource* device) { device_ = device; }
  void clipboardTaken(wl_resource* source);
  void sourceMade() { types_.clear(); }
  void typeOffered(const std::string& type) { types_.push_back(type); }
  void sourceDestroyed(wl_resource* source);
  void offerDestroyed() { --offers_; }
  [[nodiscard]] const std::string& textRequested();

 private:
  void offer(const char* type);
  wl_resource* makeOffer();
  void requestFirstType();

  wl_resource* device_ = nullptr;
  wl_resource* source_ = nullptr;  ///< the client's, while it owns the clipboard
  std::vector<std::string> types_;
  std::string text_;
  int offers_ = 0;
  int requests_ = 0;
  bool readsEach_ = false;
  BareCompositor compositor_;
};

}  // namespace seldial::tests
