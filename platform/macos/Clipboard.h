#pragma once

#include "platform/Clipboard.h"

namespace seldial::platform::macos {

/// The general pasteboard, and Command+C posted with Core Graphics. The system silently drops
/// posted events unless the user has allowed this program to control the computer.
class MacClipboard final : public platform::Clipboard {
 public:
  void clear() override;
  [[nodiscard]] bool copySelection() override;
  [[nodiscard]] std::optional<std::string> text() override;
};

}  // namespace seldial::platform::macos
