#include "platform/x11/CopyKeystroke.h"

#include <utility>

#include "platform/x11/FocusedWindow.h"
#include "platform/x11/TerminalNames.h"

namespace seldial::platform::x11 {
namespace {

constexpr std::uint16_t kVirtualKeyC = 8;

}  // namespace

/// Command tells the copy command from a C that is typed; only the key going down carries it.
class CopyKeystroke::Event final : public KeyboardEvent {
 public:
  Event(CopyKeystroke& keystroke, bool keyDown) : keystroke_(keystroke), keyDown_(keyDown) {}

  void setFlags(std::uint64_t flags) override { flags_ = flags; }

  void post(std::uint32_t /*tapLocation*/) override {
    if (keyDown_ && flags_ == kModifierFlagCommand) keystroke_.press();
    if (!keyDown_) keystroke_.release();
  }

 private:
  CopyKeystroke& keystroke_;
  const bool keyDown_;
  std::uint64_t flags_ = 0;
};

std::unique_ptr<KeyboardEventSource> CopyKeystroke::createSource(std::int32_t /*state*/) {
  class Source final : public KeyboardEventSource {};
  return std::make_unique<Source>();
}

std::unique_ptr<KeyboardEvent> CopyKeystroke::createKeyboardEvent(KeyboardEventSource* /*source*/,
                                                                  std::uint16_t keyCode,
                                                                  bool keyDown) {
  if (keyCode != kVirtualKeyC || !keyboards_.load()) return nullptr;
  const KeyboardMap& map = keyboards_.typingMap();
  if (map.control == 0 || map.insert == 0) return nullptr;
  return std::make_unique<Event>(*this, keyDown);
}

void CopyKeystroke::press() {
  const auto focused = findFocusedWindow(connection_);
  if (isTerminal(focused.names)) {
    source_.terminal = connection_.clientOf(focused.window);
    return;
  }
  held_.release();
  const KeyboardMap& map = keyboards_.typingMap();
  keyboards_.type(map.insert, false);  // another program may have left it down
  keyboards_.type(map.control, true);
  keyboards_.type(map.insert, true);
  pressed_ = true;
}

void CopyKeystroke::release() {
  if (!std::exchange(pressed_, false)) return;
  const KeyboardMap& map = keyboards_.typingMap();
  keyboards_.type(map.insert, false);
  keyboards_.type(map.control, false);
  held_.restore(map.control);
}

}  // namespace seldial::platform::x11
