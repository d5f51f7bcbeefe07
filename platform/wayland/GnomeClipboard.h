// Copying under GNOME: keys and the clipboard, through the remote desktop interface of its
// compositor Mutter.
//
// While a session is open, the top bar shows GNOME's screen sharing indicator, so a session is open
// only during a use of the hot key.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/wayland/Bus.h"

namespace seldial::platform::wayland {

/// One session at a time. Main thread only.
class MutterRemote {
 public:
  explicit MutterRemote(Bus& bus) : bus_(bus) {}
  ~MutterRemote();
  MutterRemote(const MutterRemote&) = delete;
  MutterRemote& operator=(const MutterRemote&) = delete;

  /// Whether Mutter is on the bus.
  static bool isOffered(Bus& bus);

  /// Opens a session unless one is open. False if Mutter refuses.
  bool open();
  void close();

  /// Types a key, with or without Control. The modifiers that the user holds also apply to it:
  /// there is one keyboard state. Returns before the application has acted. False if there is no
  /// session.
  bool type(xkb_keysym_t key, bool withControl = false);

  /// Takes ownership of the clipboard, without any text. What other programs put there afterwards
  /// counts as copied. Call it once per session. False if Mutter refuses.
  bool takeClipboard();

  /// The text that has been copied since takeClipboard(); see DataControl::copiedText().
  [[nodiscard]] std::optional<std::string> copiedText();

 private:
  [[nodiscard]] BusObject session() const;
  bool press(xkb_keysym_t key, bool down);
  void ownerChanged(sd_bus_message* signal);

  Bus& bus_;
  std::string session_;  ///< its path; empty while none is open
  BusSlot closed_;
  BusSlot owner_;
  std::string copiedType_;  ///< the best type of the copied data; empty if it is not text
};

/// The names of the user's running programs.
[[nodiscard]] std::vector<std::string> runningPrograms();

/// GNOME does not report which window has the focus, so any running program may have it. While a
/// terminal runs that treats Ctrl+Insert as input, the copy keystroke is the Copy key, which is
/// harmless everywhere but supported by fewer applications. While a program runs in which every
/// keystroke does harm, nothing is typed. Main thread only.
class GnomeClipboard final : public Clipboard {
 public:
  /// `remote` must outlive this object; its session ends with text().
  GnomeClipboard(MutterRemote& remote, std::function<std::vector<std::string>()> runningPrograms)
      : remote_(remote), runningPrograms_(std::move(runningPrograms)) {}

  void clear() override;
  [[nodiscard]] bool copySelection() override;
  [[nodiscard]] std::optional<std::string> text() override;

 private:
  void reportOnce(const std::string& line);

  MutterRemote& remote_;
  const std::function<std::vector<std::string>()> runningPrograms_;
  std::vector<std::string> programs_;  ///< during the last copy
  bool taken_ = false;
  std::string lastReport_;  ///< the last line on standard error
};

}  // namespace seldial::platform::wayland
