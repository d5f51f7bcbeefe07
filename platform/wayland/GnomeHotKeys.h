// Hot keys under GNOME: shortcuts of the desktop portal.
//
// The portal reports when the key of a shortcut is pressed and released, but not when the user
// releases the modifiers. If a modifier is released before the key, it does not report the release
// of the key either. The copy keystroke must be typed only when no modifier is down: otherwise it
// would be a different keystroke, which a program in a terminal would receive. So we register a
// second shortcut, a key without modifiers that keyboards do not have. Typed while a modifier is
// down, it is not a shortcut; typed when all modifiers are up, it is, and the portal reports it.
#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/MainLoop.h"
#include "platform/linux/RegisteredHotKeys.h"
#include "platform/wayland/MutterRemote.h"
#include "platform/wayland/PortalShortcuts.h"

namespace seldial::platform::wayland {

struct GnomeHotKey {
  std::string trigger;  ///< the combination in the portal's notation; also the id of the shortcut
};

/// Main thread only. Releases reach the handler through the main queue, when no modifier is down;
/// the session of `remote` is then open, and the handler must close it.
class GnomeHotKeys final : public linux_port::RegisteredHotKeys<GnomeHotKey> {
 public:
  /// The name of the symbol on a key, an X key code; see SeatKeymap::symbolName().
  using SymbolName = std::function<std::string(std::uint32_t key)>;

  /// `bus` and `remote` must outlive this object.
  GnomeHotKeys(linux_port::MainLoop& loop, Bus& bus, MutterRemote& remote, SymbolName symbolName);

  /// Accepts a combination even while the user is still being asked. Lines on standard error report
  /// this, the answer, and the key that the user has chosen.
  std::optional<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                          HotKeyID hotKeyID) override;
  void unregisterHotKey(HotKeyRef ref) override;
  [[nodiscard]] bool canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) override;

  /// Whether the desktop has granted the last request.
  [[nodiscard]] bool isBound() const { return portal_.isBound(); }

  /// Releases every combination, at the end of the program.
  void unregisterAll();

 private:
  using Clock = std::chrono::steady_clock;

  /// A use of a hot key: from the press until no modifier is down.
  struct Use {
    HotKeyID hotKeyID;
    std::string id;
    std::uint64_t pressed;  ///< time of the press, in the compositor's milliseconds
    bool released = false;  ///< the portal has reported the release of the key
    Clock::time_point deadline;
  };

  [[nodiscard]] std::string triggerOf(std::uint32_t keyCode, std::uint32_t modifiers) const;
  [[nodiscard]] bool hasModifiers(const std::string& id) const;
  PortalShortcuts::Answer bindAll();
  void reportAnswer(PortalShortcuts::Answer answer);
  void reportOnce(const std::string& line);
  void activated(const std::string& id, std::uint64_t time);
  void deactivated(const std::string& id);
  void probeModifiers();
  void modifiersAreUp(std::uint64_t time);
  void endUse();

  MutterRemote& remote_;
  const SymbolName symbolName_;
  std::optional<Use> use_;
  std::string lastReport_;  ///< the last line on standard error
  linux_port::Timer timer_;
  PortalShortcuts portal_;
  BusSlot screenLock_;  ///< locking the screen ends a use
};

}  // namespace seldial::platform::wayland
