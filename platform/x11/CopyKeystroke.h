// The copy command, as this desktop types it.
//
// Command+C, down and up, is the copy command where the protocol comes from. Here it becomes
// Ctrl+Insert: it copies wherever Ctrl+C does, and it interrupts no program. Where the keys would
// go to a terminal nothing is typed; its selection is read without.
#pragma once

#include "platform/KeyboardEvents.h"
#include "platform/x11/CopySource.h"
#include "platform/x11/HeldModifiers.h"

namespace seldial::platform::x11 {

/// Main thread only. The one keystroke that this desktop knows: an event for any key but C is
/// refused, and so is one for C where no key carries Control or Insert.
class CopyKeystroke final : public KeyboardEvents {
 public:
  CopyKeystroke(Connection& connection, Keyboards& keyboards, HeldModifiers& held,
                CopySource& source)
      : connection_(connection), keyboards_(keyboards), held_(held), source_(source) {}

  std::unique_ptr<KeyboardEventSource> createSource(std::int32_t state) override;
  std::unique_ptr<KeyboardEvent> createKeyboardEvent(KeyboardEventSource* source,
                                                     std::uint16_t keyCode, bool keyDown) override;

 private:
  class Event;

  void press();
  void release();

  Connection& connection_;
  Keyboards& keyboards_;
  HeldModifiers& held_;
  CopySource& source_;
  bool pressed_ = false;
};

}  // namespace seldial::platform::x11
