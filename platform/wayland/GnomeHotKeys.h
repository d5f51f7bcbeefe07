// Hot keys under GNOME: shortcuts of the desktop portal.
//
// The portal tells when a shortcut's key goes down and up, but not when the user lets go of the
// modifiers, and it does not tell that the key went up when a modifier went up before it. The copy
// keystroke may only be typed when no modifier is down: it would be another keystroke, and a
// program in a terminal would get it. So the portal is asked for a second shortcut, a key without
// modifiers that keyboards do not have. Typed while a modifier is down it is no shortcut; typed
// when all are up it is, and the portal tells so.
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
  std::string trigger;  ///< as the portal spells the combination; also the shortcut's id
};

/// Main thread only. Releases reach the handler through the main queue, when no modifier is down;
/// the session of `remote` is open then. Whoever handles them closes it.
class GnomeHotKeys final : public linux_port::RegisteredHotKeys<GnomeHotKey> {
 public:
  /// The name of the symbol on a key, an X key code; see SeatKeymap::symbolName().
  using SymbolName = std::function<std::string(std::uint32_t key)>;

  /// `bus` and `remote` must outlive this object.
  GnomeHotKeys(linux_port::MainLoop& loop, Bus& bus, MutterRemote& remote, SymbolName symbolName);

  /// Accepts a combination also while the user is still being asked. Standard error tells that, the
  /// answer, and the key that the user chose.
  std::optional<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                          HotKeyID hotKeyID) override;
  void unregisterHotKey(HotKeyRef ref) override;
  [[nodiscard]] bool canBeHotKey(std::uint32_t keyCode, std::uint32_t modifiers) override;

  /// Whether the desktop has given what was asked for last.
  [[nodiscard]] bool isBound() const { return portal_.isBound(); }

  /// Gives every combination back; the program ends.
  void unregisterAll();

 private:
  using Clock = std::chrono::steady_clock;

  /// From the press of a hot key until no modifier is down.
  struct Use {
    HotKeyID hotKeyID;
    std::string id;
    std::uint64_t pressed;  ///< when, in the compositor's milliseconds
    bool released = false;  ///< that is, the portal has told that the key went up
    Clock::time_point deadline;
  };

  [[nodiscard]] std::string triggerOf(std::uint32_t keyCode, std::uint32_t modifiers) const;
  [[nodiscard]] bool hasModifiers(const std::string& id) const;
  PortalShortcuts::Answer bindAll();
  void tellAnswer(PortalShortcuts::Answer answer);
  void tell(const std::string& line);
  void activated(const std::string& id, std::uint64_t time);
  void deactivated(const std::string& id);
  void askForModifiers();
  void modifiersAreUp(std::uint64_t time);
  void endUse();

  MutterRemote& remote_;
  const SymbolName symbolName_;
  std::optional<Use> use_;
  std::string told_;  ///< what the user knows
  linux_port::Timer timer_;
  PortalShortcuts portal_;
};

}  // namespace seldial::platform::wayland
