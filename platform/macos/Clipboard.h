#pragma once

#include "platform/Clipboard.h"

namespace seldial::platform::macos {

/// The general pasteboard, and Command-C posted with Core Graphics. The system silently drops
/// posted events until the user has consented.
class MacClipboard final : public platform::Clipboard {
 public:
  void clear() override;
  [[nodiscard]] bool copySelection() override;
  [[nodiscard]] std::optional<std::string> text() override;
};

/// Lets macOS ask the user for the consent to post keys, unless it has been given; then also writes
/// one line to standard error. Returns at once. Main thread.
void requestConsent();

}  // namespace seldial::platform::macos
