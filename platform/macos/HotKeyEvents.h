#pragma once

#include <functional>

#include "platform/HotKeyEvents.h"

namespace seldial::platform::macos {

/// Hot keys of the Carbon Event Manager. At most one per process: the system calls the handler
/// without a reference to this object.
class CarbonHotKeyEvents final : public platform::HotKeyEvents {
 public:
  /// `firstRegistered` is called once, as soon as a hot key is registered; it may be empty.
  explicit CarbonHotKeyEvents(std::function<void()> firstRegistered = {});

  /// The handler of the system is installed once and never removed.
  void installReleasedHandler(ReleasedHandler handler) override;
  std::optional<HotKeyRef> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                          HotKeyID hotKeyID) override;
  void unregisterHotKey(HotKeyRef ref) override;
  bool logError(const char* line) override;

 private:
  std::function<void()> firstRegistered_;  ///< empty once it was called
  bool installed_ = false;
};

}  // namespace seldial::platform::macos
