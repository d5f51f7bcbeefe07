#include <ApplicationServices/ApplicationServices.h>

#include <memory>
#include <type_traits>

#include "platform/Output.h"
#include "platform/VirtualKeys.h"
#include "platform/macos/Cocoa.h"
#include "platform/macos/Desktop.h"

namespace seldial::platform::macos {
namespace {

constexpr const char* kUTF8PlainText = "public.utf8-plain-text";

struct Release {
  void operator()(const void* object) const { CFRelease(object); }
};

/// A Core Foundation object that this code owns; null if the system returned none.
template <class Ref>
using Owned = std::unique_ptr<std::remove_pointer_t<Ref>, Release>;

/// Whether this program may post events. If not, macOS asks the user, but does not wait for the
/// answer.
bool requestPostEventAccess() {
  // Available since 10.15, but it has crashed in 10.15.3.
  if (__builtin_available(macOS 11.0, *)) return CGRequestPostEventAccess();
  const void* key = kAXTrustedCheckOptionPrompt;
  const void* value = kCFBooleanTrue;
  const Owned<CFDictionaryRef> options(CFDictionaryCreate(
      nullptr, &key, &value, 1, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
  return AXIsProcessTrustedWithOptions(options.get()) != 0;
}

}  // namespace

void MacClipboard::clear() {
  clearGeneralPasteboard();
}

bool MacClipboard::copySelection() {
  // Events can be created without a source, so a missing one is not an error.
  const Owned<CGEventSourceRef> source(CGEventSourceCreate(kCGEventSourceStateHIDSystemState));
  const Owned<CGEventRef> keyDown(CGEventCreateKeyboardEvent(source.get(), kVK_ANSI_C, true));
  const Owned<CGEventRef> keyUp(CGEventCreateKeyboardEvent(source.get(), kVK_ANSI_C, false));
  if (!keyDown || !keyUp) return false;
  // The key-up event keeps the flags that it was created with, on purpose.
  CGEventSetFlags(keyDown.get(), kCGEventFlagMaskCommand);
  CGEventPost(kCGHIDEventTap, keyDown.get());
  CGEventPost(kCGHIDEventTap, keyUp.get());
  return true;
}

std::optional<std::string> MacClipboard::text() {
  return generalPasteboardString(kUTF8PlainText);
}

void requestConsent() {
  if (requestPostEventAccess()) return;
  printError(
      "seldial: macOS does not let Seldial press Command-C yet; see System Settings > "
      "Privacy & Security > Accessibility");
}

}  // namespace seldial::platform::macos
