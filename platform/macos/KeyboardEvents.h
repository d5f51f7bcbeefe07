#pragma once

#include "platform/KeyboardEvents.h"

namespace seldial::platform::macos {

/// Core Graphics events. Every value is passed on as it comes. The system drops what is posted,
/// without a word, unless the user has allowed this program to control the computer.
class CoreGraphicsKeyboardEvents final : public platform::KeyboardEvents {
 public:
  std::unique_ptr<KeyboardEventSource> createSource(std::int32_t state) override;
  std::unique_ptr<KeyboardEvent> createKeyboardEvent(KeyboardEventSource* source,
                                                     std::uint16_t keyCode, bool keyDown) override;
};

}  // namespace seldial::platform::macos
