// A program with a focused window, optionally with a selection.
#pragma once

#include <linux/input-event-codes.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/support/wayland/WaylandClient.h"

struct xdg_surface;
struct xdg_toplevel;
struct xdg_wm_base;

namespace seldial::tests {

/// The behaviour of an Editor.
struct EditorSettings {
  std::string applicationId = "editor";
  std::optional<std::string> selected = "+31 20 123 4567";  ///< what its copy keys copy
  std::string type = "text/plain;charset=utf-8";            ///< the type that it offers
  unsigned copyKey = KEY_INSERT;  ///< together with Control; KEY_COPY without Control
};

/// A key that the window has received.
struct EditorKey {
  unsigned key = 0;        ///< an evdev code
  unsigned modifiers = 0;  ///< the modifier bits of the compositor
  bool operator==(const EditorKey&) const = default;
};

constexpr unsigned kEditorControl = 4;  ///< Control among EditorKey::modifiers

/// After construction its window has the keyboard focus.
class Editor final : public WaylandClient {
 public:
  explicit Editor(const std::string& socketPath, EditorSettings settings = {});
  ~Editor();
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  void select(std::optional<std::string> text);

  /// The presses of keys other than modifiers, in order.
  [[nodiscard]] std::vector<EditorKey> keys() const;
  /// Waits until this key has been received `times` times.
  void waitForKey(unsigned key, std::size_t times = 1) const;
  /// Waits until the program has copied `count` times and the compositor knows it.
  void waitForCopies(std::size_t count);

  // Called by libwayland, under the lock.
  void configured(xdg_surface* surface, std::uint32_t serial);
  void keyChanged(std::uint32_t serial, unsigned key, bool down);
  void sendText(int pipe);
  void sourceCancelled(wl_data_source* source);
  unsigned modifiers = 0;
  bool focused = false;
  std::vector<wl_data_offer*> offers;  ///< of the clipboard, to be destroyed at the end

 private:
  void makeWindow();
  void copy(std::uint32_t serial);

  EditorSettings settings_;
  wl_compositor* compositor_;
  wl_shm* shm_;
  wl_seat* seat_;
  wl_keyboard* keyboard_;
  xdg_wm_base* shell_;
  wl_data_device_manager* dataManager_;
  wl_data_device* dataDevice_;
  wl_surface* surface_ = nullptr;
  xdg_surface* shellSurface_ = nullptr;
  xdg_toplevel* window_ = nullptr;
  std::vector<EditorKey> keys_;
  std::set<wl_data_source*> sources_;  ///< those that the compositor still uses
  std::size_t copies_ = 0;
};

}  // namespace seldial::tests
