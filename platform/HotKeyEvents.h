#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "platform/VirtualKeys.h"

namespace seldial::platform {

/// Identifies a registration in the events that it causes.
struct HotKeyID {
  std::uint32_t signature = 0;  ///< the same for all hot keys of one owner
  std::uint32_t id = 0;         ///< which of the owner's hot keys
};

/// The port's opaque handle of one registration.
using HotKeyRef = std::uintptr_t;

/// The release of a registered hot key, as the desktop reports it.
struct HotKeyReleased {
  HotKeyID hotKeyID;  ///< as it was registered
  KeyEvent event;     ///< position, time and the modifiers still held; no key code
};

/// System-wide hot keys. Main thread only.
class HotKeyEvents {
 public:
  /// Called for each release.
  using ReleasedHandler = std::function<void(const HotKeyReleased&)>;

  virtual ~HotKeyEvents() = default;

  /// Sets the handler, which is called for every release, one at a time, on the main thread. It may
  /// register and unregister hot keys.
  virtual void installReleasedHandler(ReleasedHandler handler) = 0;

  /// Registers the combination of a virtual key code and HotKeyModifier bits. Nothing when the
  /// desktop refuses: there is no such key, or another program holds the combination.
  virtual std::optional<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                  HotKeyID hotKeyID) = 0;

  /// Gives up the combination, so that other programs can register it.
  virtual void unregisterHotKey(HotKeyRef ref) = 0;

  /// False if the desktop would refuse the combination even though no program holds it. True if the
  /// port does not know.
  [[nodiscard]] virtual bool canBeHotKey(std::uint32_t /*keyCode*/, std::uint32_t /*modifiers*/) {
    return true;
  }

  /// Writes a line about an error of the program itself to the system log. False on a desktop that
  /// has no such log; nothing is written then.
  virtual bool logError(const char* /*line*/) { return false; }
};

}  // namespace seldial::platform
