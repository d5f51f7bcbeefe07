// The remote desktop interface of GNOME's compositor Mutter: it types keys, and reads the
// clipboard.
//
// While a session is open, the top bar shows GNOME's screen sharing indicator, so a session is open
// only during a use of the hot key.
#pragma once

#include <xkbcommon/xkbcommon.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/wayland/Bus.h"
#include "platform/wayland/ClipboardText.h"

namespace seldial::platform::wayland {

/// One session at a time. Main thread only.
class MutterRemote {
 public:
  /// `focusedX11ProgramOwnsClipboard`: x11::focusedProgramOwnsClipboard(). `bus` and `loop` must
  /// outlive this object.
  MutterRemote(Bus& bus, linux_port::MainLoop& loop,
               std::function<bool()> focusedX11ProgramOwnsClipboard)
      : bus_(bus),
        focusedX11ProgramOwnsClipboard_(std::move(focusedX11ProgramOwnsClipboard)),
        incoming_(loop) {}
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

  /// Takes ownership of the clipboard, without any text. Call it once per session. False if Mutter
  /// refuses.
  bool takeClipboard();

  /// The text that an application has copied since takeClipboard(); see DataControl::copiedText().
  /// What an X11 program without the focus puts there does not count: it is a clipboard manager.
  /// Under GNOME the others are extensions of GNOME Shell, see mayBeFromExtension().
  [[nodiscard]] std::optional<std::string> copiedText();

  /// Whether copiedText() may be from an extension of GNOME Shell. Then the application must copy
  /// again, after clearAgain().
  [[nodiscard]] bool mayBeFromExtension();
  /// Whether copiedText() is nothing because a clipboard manager has taken over the clipboard too
  /// early.
  [[nodiscard]] bool isCopyLost() const { return lost_; }
  /// Takes the clipboard again and returns once it has not changed for a second, so that the next
  /// change is a copy. False if it keeps changing for three seconds, or Mutter refuses.
  [[nodiscard]] bool clearAgain();

  /// Handles signals for that long.
  void wait(std::chrono::steady_clock::duration time);

 private:
  using Clock = std::chrono::steady_clock;

  enum class Owner {
    kApplication,  ///< the focused one
    kManager,      ///< another program
    kUnknown,      ///< an application, or an extension of GNOME Shell
  };

  [[nodiscard]] BusObject session() const;
  bool press(xkb_keysym_t key, bool down);
  void ownerChanged(sd_bus_message* signal);
  [[nodiscard]] Owner ownerOf(const std::vector<std::string>& types) const;
  void request();
  void forgetCopy();

  Bus& bus_;
  const std::function<bool()> focusedX11ProgramOwnsClipboard_;
  std::string session_;  ///< its path; empty while none is open
  BusSlot closed_;
  BusSlot owner_;
  std::string copiedType_;  ///< the best type of the copied data; empty if it is not text
  bool isSure_ = false;     ///< it was copied by an application
  bool lost_ = false;       ///< it may not have been read before a manager took the clipboard
  bool changed_ = false;    ///< another program has taken the clipboard
  IncomingText incoming_;   ///< the copied text
  /// Mutter's serial number of the reply with the pipe of incoming_; 0 while there is none.
  std::uint64_t replySerial_ = 0;
};

}  // namespace seldial::platform::wayland
