// The functions of AppKit and Foundation that the C++ files of this port need. Main thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/Application.h"

namespace seldial::platform::macos {

/// The fields of a Carbon event that Seldial needs, as Cocoa has them.
struct EventFields {
  double locationX = 0;  ///< in the coordinates of its window, or of the screen without a window
  double locationY = 0;
  std::uint64_t modifierFlags = 0;  ///< ModifierFlag bits, and others of Cocoa's
  double timestamp = 0;             ///< seconds since the system started
};

/// The fields of an EventRef; all zero if Cocoa does not know that kind of event.
EventFields eventFields(const void* event);

/// Empties the general pasteboard.
void clearGeneralPasteboard();

/// The general pasteboard's string of `type`, a uniform type identifier, as UTF-8. Nothing if it
/// has none, or one that is not valid Unicode (half a surrogate pair).
std::optional<std::string> generalPasteboardString(const char* type);

/// Calls `body` within an autorelease pool.
void inAutoreleaseScope(const std::function<void()>& body);

/// Writes a line to the system log, which standard error shows as well.
void logToSystem(const char* line);

/// Sends the shared application `terminate:`, with its delegate as sender unless `sender` is null.
/// Returns only if the termination is refused or postponed.
void terminateSharedApplication(ApplicationDelegate* sender);

}  // namespace seldial::platform::macos
