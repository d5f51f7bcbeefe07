// What the plain C++ half of this port asks of its Objective-C++ half. Main thread only.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "platform/Application.h"

namespace seldial::platform::macos {

/// What an event of the Event Manager says when it is looked at as a Cocoa event.
struct EventFields {
  double locationX = 0;  ///< in its window's coordinates; of the screen when it has none
  double locationY = 0;
  std::uint64_t modifierFlags = 0;  ///< as Cocoa gives them
  double timestamp = 0;             ///< seconds since the system started
};

/// The fields of an EventRef, which stays the caller's; all zero when it is no event that Cocoa
/// knows.
EventFields eventFields(const void* event);

/// Empties the general pasteboard.
void clearGeneralPasteboard();

/// The general pasteboard's string of `type`, a uniform type identifier, as UTF-8. Nothing when it
/// has none, or one that is not valid Unicode (half a surrogate pair).
std::optional<std::string> generalPasteboardString(const char* type);

/// Calls `body` and then gives back what Cocoa has autoreleased meanwhile.
void inAutoreleaseScope(const std::function<void()>& body);

/// Sends the shared application `terminate:`. Does not return unless something objects.
void terminateSharedApplication(ApplicationDelegate* sender);

}  // namespace seldial::platform::macos
