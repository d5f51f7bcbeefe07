#pragma once

#include <optional>
#include <string>

namespace seldial::platform {

/// Plain UTF-8 text, as pasteboards name it.
inline constexpr const char* kUTF8PlainText = "public.utf8-plain-text";

/// The general pasteboard, the one that Copy fills and Paste reads. Main thread only.
class Pasteboard {
 public:
  virtual ~Pasteboard() = default;

  /// Empties the pasteboard, so that a text from before can no longer be read.
  virtual void clearContents() = 0;

  /// The pasteboard's text of that type, exactly as its owner gives it; nothing when it holds none
  /// or its owner does not hand it over in a bounded time.
  [[nodiscard]] virtual std::optional<std::string> stringForType(const std::string& type) = 0;
};

}  // namespace seldial::platform
