// Where the text of the copy that was asked for last is to be found.
#pragma once

#include <cstdint>
#include <optional>

namespace seldial::platform::x11 {

/// Shared by the copy keystroke, which knows the application, and the pasteboard, which reads.
struct CopySource {
  /// A terminal: its selection is read in place of the clipboard, where this client (see
  /// Connection::clientOf) owns it. Nothing: the clipboard.
  std::optional<std::uint32_t> terminal;
};

}  // namespace seldial::platform::x11
