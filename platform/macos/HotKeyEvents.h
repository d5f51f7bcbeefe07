#pragma once

#include "platform/HotKeyEvents.h"

namespace seldial::platform::macos {

/// Hot keys of the Event Manager. A process has one such object: its events know no other way to it
/// than through the process.
class CarbonHotKeyEvents final : public platform::HotKeyEvents {
 public:
  /// The system's own handler is installed once and never removed; a further handler takes the
  /// place of the one before.
  void installReleasedHandler(ReleasedHandler handler) override;
  std::optional<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                          HotKeyID hotKeyID) override;
  void unregisterHotKey(HotKeyRef ref) override;

 private:
  bool installed_ = false;
};

}  // namespace seldial::platform::macos
