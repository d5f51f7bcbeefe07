#pragma once

#include <optional>
#include <string>

namespace seldial::platform {

/// The clipboard for Copy and Paste. Main thread only.
class Clipboard {
 public:
  virtual ~Clipboard() = default;

  /// Clears the clipboard, so that an older text can no longer be read.
  virtual void clear() = 0;

  /// Makes the focused application copy its selection, as if the user had chosen Copy. Returns
  /// before that application has acted. False if the desktop cannot do this; then nothing has been
  /// sent to any application.
  [[nodiscard]] virtual bool copySelection() = 0;

  /// The plain text on the clipboard as UTF-8, unaltered; after copySelection(), the text that was
  /// copied. Nothing if there is no text or its owner does not transfer it in time; each port
  /// limits the wait.
  [[nodiscard]] virtual std::optional<std::string> text() = 0;
};

}  // namespace seldial::platform
