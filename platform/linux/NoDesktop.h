// The ports of a process without a display server.
#pragma once

#include "platform/Clipboard.h"
#include "platform/HotKeyEvents.h"

namespace seldial::platform::linux_port {

/// Always empty; nothing can be copied to it.
class NoClipboard final : public Clipboard {
 public:
  void clear() override {}
  [[nodiscard]] bool copySelection() override { return false; }
  [[nodiscard]] std::optional<std::string> text() override { return {}; }
};

/// Refuses every hot key.
class NoHotKeyEvents final : public HotKeyEvents {
 public:
  void installReleasedHandler(ReleasedHandler /*handler*/) override {}
  std::optional<HotKeyRef> registerHotKey(std::uint32_t /*keyCode*/, std::uint32_t /*modifiers*/,
                                          HotKeyID /*hotKeyID*/) override {
    return {};
  }
  void unregisterHotKey(HotKeyRef /*ref*/) override {}
};

}  // namespace seldial::platform::linux_port
