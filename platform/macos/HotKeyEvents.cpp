#include "platform/macos/HotKeyEvents.h"

#include <Carbon/Carbon.h>

#include <string>
#include <utility>

#include "platform/Output.h"
#include "platform/macos/Cocoa.h"

namespace seldial::platform::macos {
namespace {

static_assert(sizeof(EventHotKeyID) == 8);

/// Never destroyed, because the handler of the system is never removed.
HotKeyEvents::ReleasedHandler& releasedHandler() {
  static auto* const handler = new HotKeyEvents::ReleasedHandler;
  return *handler;
}

/// Ignores, on purpose, the signature and a failure to read the identifier; the id is then 0, which
/// no hot key has.
HotKeyReleased released(EventRef event) {
  EventHotKeyID hotKeyID{};
  GetEventParameter(event, kEventParamDirectObject, typeEventHotKeyID, nullptr, sizeof hotKeyID,
                    nullptr, &hotKeyID);
  const EventFields fields = eventFields(event);
  HotKeyReleased result;
  result.hotKeyID = {hotKeyID.signature, hotKeyID.id};
  result.event.locationX = fields.locationX;
  result.event.locationY = fields.locationY;
  result.event.modifierFlags = fields.modifierFlags;
  result.event.timestamp = fields.timestamp;
  return result;
}

OSStatus hotKeyHandler(EventHandlerCallRef /*next*/, EventRef event, void* /*userData*/) {
  inAutoreleaseScope([event] { releasedHandler()(released(event)); });
  return noErr;
}

}  // namespace

CarbonHotKeyEvents::CarbonHotKeyEvents(std::function<void()> firstRegistered)
    : firstRegistered_(std::move(firstRegistered)) {}

void CarbonHotKeyEvents::installReleasedHandler(ReleasedHandler handler) {
  releasedHandler() = std::move(handler);
  if (installed_) return;
  const EventTypeSpec type = {kEventClassKeyboard, kEventHotKeyReleased};
  const OSStatus status =
      InstallEventHandler(GetApplicationEventTarget(), &hotKeyHandler, 1, &type, nullptr, nullptr);
  installed_ = status == noErr;
  // Hot keys can still be registered, and the caller cannot report that they will not work.
  if (!installed_) printError("seldial: no handler for hot keys (" + std::to_string(status) + ")");
}

std::optional<HotKeyRef> CarbonHotKeyEvents::registerHotKey(std::uint32_t keyCode,
                                                            std::uint32_t modifiers,
                                                            HotKeyID hotKeyID) {
  EventHotKeyRef ref = nullptr;
  const EventHotKeyID name = {hotKeyID.signature, hotKeyID.id};
  const OSStatus status =
      RegisterEventHotKey(keyCode, modifiers, name, GetEventDispatcherTarget(), 0, &ref);
  if (status != noErr) return {};
  if (const auto first = std::exchange(firstRegistered_, {})) first();
  return reinterpret_cast<HotKeyRef>(ref);
}

void CarbonHotKeyEvents::unregisterHotKey(HotKeyRef ref) {
  // Failure is harmless: the hot key is already unregistered.
  UnregisterEventHotKey(
      reinterpret_cast<EventHotKeyRef>(ref));  // NOLINT(performance-no-int-to-ptr)
}

bool CarbonHotKeyEvents::logError(const char* line) {
  logToSystem(line);
  return true;
}

}  // namespace seldial::platform::macos
