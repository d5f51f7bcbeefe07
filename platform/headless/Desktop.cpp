#include "platform/headless/Desktop.h"

#include "platform/HotKeyEvents.h"
#include "platform/Installed.h"
#include "platform/KeyboardEvents.h"
#include "platform/Pasteboard.h"

namespace seldial::platform::headless {
namespace {

class NoPasteboard final : public Pasteboard {
 public:
  void clearContents() override {}
  std::optional<std::string> stringForType(const std::string& /*type*/) override { return {}; }
};

class NoKeyboardEvents final : public KeyboardEvents {
 public:
  std::unique_ptr<KeyboardEventSource> createSource(std::int32_t /*state*/) override { return {}; }
  std::unique_ptr<KeyboardEvent> createKeyboardEvent(KeyboardEventSource* /*source*/,
                                                     std::uint16_t /*keyCode*/,
                                                     bool /*keyDown*/) override {
    return {};
  }
};

class NoHotKeyEvents final : public HotKeyEvents {
 public:
  void installReleasedHandler(ReleasedHandler /*handler*/) override {}
  std::optional<HotKeyRef> registerHotKey(std::uint32_t /*keyCode*/, std::uint32_t /*modifiers*/,
                                          HotKeyID /*hotKeyID*/) override {
    return {};
  }
  void unregisterHotKey(HotKeyRef /*ref*/) override {}
};

}  // namespace

void installDesktop() {
  installed<Pasteboard>() = std::make_shared<NoPasteboard>();
  installed<KeyboardEvents>() = std::make_shared<NoKeyboardEvents>();
  installed<HotKeyEvents>() = std::make_shared<NoHotKeyEvents>();
}

}  // namespace seldial::platform::headless
