#pragma once

#include <optional>
#include <string>

namespace seldial::platform {

/// The clipboard that Copy fills and Paste reads. Main thread only.
class Clipboard {
 public:
  virtual ~Clipboard() = default;

  /// Empties the clipboard, so that a text from before can no longer be read.
  virtual void clear() = 0;

  /// Makes the application in front copy its selection, as if the user had chosen Copy. Returns
  /// before that application has acted. False when the desktop has no means to do it; nothing has
  /// been sent to any application then.
  [[nodiscard]] virtual bool copySelection() = 0;

  /// The plain text on the clipboard as UTF-8, unaltered; after copySelection(), the text that was
  /// copied. Nothing when there is no text or its owner does not hand it over in time (a port
  /// bounds the wait).
  [[nodiscard]] virtual std::optional<std::string> text() = 0;
};

}  // namespace seldial::platform
