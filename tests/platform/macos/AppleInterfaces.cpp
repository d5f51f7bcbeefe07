// The properties of Apple's interfaces on which the port relies. This file is compiled twice: with
// the declarations of the tests, in include/, and by scripts/check-macos with Apple's headers. So
// the test doubles are called like the system.
#include <ApplicationServices/ApplicationServices.h>
#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>
#include <dispatch/dispatch.h>
#include <mach-o/dyld.h>
#include <pthread.h>
#include <sys/socket.h>

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace {

template <class Left, class Right>
constexpr bool same = std::is_same_v<Left, Right>;

/// Whether the underlying type of an enumeration is `Number`.
template <class Enumeration, class Number>
constexpr bool isLike = same<std::underlying_type_t<Enumeration>, Number>;

constexpr std::uint32_t code(const char (&letters)[5]) {
  std::uint32_t value = 0;
  for (int i = 0; i < 4; ++i) value = value * 256 + static_cast<unsigned char>(letters[i]);
  return value;
}

// Types
static_assert(same<OSStatus, std::int32_t> && noErr == 0);
static_assert(same<OSType, std::uint32_t> && same<OptionBits, std::uint32_t>);
static_assert(same<ItemCount, unsigned long> && same<ByteCount, unsigned long>);
static_assert(same<UniCharCount, unsigned long> && same<UniChar, std::uint16_t>);
static_assert(sizeof(unsigned long) == 8 && sizeof(void*) == 8);
static_assert(same<CGKeyCode, std::uint16_t>);
static_assert(isLike<CGEventSourceStateID, std::int32_t>);
static_assert(same<CGEventFlags, std::uint64_t>);
static_assert(isLike<CGEventTapLocation, std::uint32_t>);
static_assert(sizeof(dispatch_time_t) == 8 && std::is_unsigned_v<dispatch_time_t>);

// Constants
static_assert(kEventClassKeyboard == code("keyb"));
static_assert(kEventHotKeyReleased == 6);
static_assert(kEventParamDirectObject == code("----"));
static_assert(typeEventHotKeyID == code("hkid"));
static_assert(kUCKeyActionDown == 0);
static_assert(kCGEventSourceStateHIDSystemState == 1);
static_assert(kCGEventFlagMaskCommand == 0x100000);
static_assert(kCGHIDEventTap == 0);
static_assert(DISPATCH_TIME_NOW == 0);
static_assert(SO_NOSIGPIPE == 0x1022);

// Structures
static_assert(sizeof(EventHotKeyID) == 8);
static_assert(offsetof(EventHotKeyID, signature) == 0 && offsetof(EventHotKeyID, id) == 4);
static_assert(sizeof(EventTypeSpec) == 8);
static_assert(offsetof(EventTypeSpec, eventClass) == 0 && offsetof(EventTypeSpec, eventKind) == 4);

// Signatures of functions
static_assert(same<EventHandlerUPP, OSStatus (*)(EventHandlerCallRef, EventRef, void*)>);
static_assert(same<decltype(&GetApplicationEventTarget), EventTargetRef (*)()>);
static_assert(same<decltype(&GetEventDispatcherTarget), EventTargetRef (*)()>);
static_assert(same<decltype(&InstallEventHandler),
                   OSStatus (*)(EventTargetRef, EventHandlerUPP, unsigned long,
                                const EventTypeSpec*, void*, EventHandlerRef*)>);
static_assert(same<decltype(&RegisterEventHotKey),
                   OSStatus (*)(std::uint32_t, std::uint32_t, EventHotKeyID, EventTargetRef,
                                std::uint32_t, EventHotKeyRef*)>);
static_assert(same<decltype(&UnregisterEventHotKey), OSStatus (*)(EventHotKeyRef)>);
static_assert(same<decltype(&GetEventParameter),
                   OSStatus (*)(EventRef, EventParamName, EventParamType, EventParamType*,
                                unsigned long, unsigned long*, void*)>);
static_assert(same<decltype(&TISCopyCurrentKeyboardInputSource), TISInputSourceRef (*)()>);
static_assert(
    same<decltype(&TISCopyCurrentASCIICapableKeyboardLayoutInputSource), TISInputSourceRef (*)()>);
static_assert(
    same<decltype(&TISGetInputSourceProperty), void* (*)(TISInputSourceRef, CFStringRef)>);
static_assert(same<decltype(&LMGetKbdType), std::uint8_t (*)()>);
static_assert(same<decltype(&UCKeyTranslate),
                   OSStatus (*)(const UCKeyboardLayout*, std::uint16_t, std::uint16_t,
                                std::uint32_t, std::uint32_t, std::uint32_t, std::uint32_t*,
                                unsigned long, unsigned long*, std::uint16_t*)>);
static_assert(same<decltype(kCFBooleanTrue), const CFBooleanRef>);
static_assert(
    same<decltype(&CFDictionaryCreate),
         CFDictionaryRef (*)(CFAllocatorRef, const void**, const void**, CFIndex,
                             const CFDictionaryKeyCallBacks*, const CFDictionaryValueCallBacks*)>);
static_assert(same<decltype(kAXTrustedCheckOptionPrompt), CFStringRef>);
static_assert(same<decltype(&AXIsProcessTrustedWithOptions), std::uint8_t (*)(CFDictionaryRef)>);
static_assert(same<decltype(&CFRelease), void (*)(CFTypeRef)>);
static_assert(same<CFTypeRef, const void*>);
static_assert(same<decltype(&CFDataGetBytePtr), const std::uint8_t* (*)(CFDataRef)>);
static_assert(same<decltype(&CGEventSourceCreate), CGEventSourceRef (*)(CGEventSourceStateID)>);
static_assert(
    same<decltype(&CGEventCreateKeyboardEvent), CGEventRef (*)(CGEventSourceRef, CGKeyCode, bool)>);
static_assert(same<decltype(&CGEventSetFlags), void (*)(CGEventRef, CGEventFlags)>);
static_assert(same<decltype(&CGEventPost), void (*)(CGEventTapLocation, CGEventRef)>);
#ifdef __clang__  // the port calls it only where it exists
#pragma clang diagnostic ignored "-Wunguarded-availability-new"
#endif
static_assert(same<decltype(&CGRequestPostEventAccess), bool (*)()>);
static_assert(same<dispatch_function_t, void (*)(void*)>);
static_assert(same<decltype(&dispatch_async_f),
                   void (*)(dispatch_queue_t, void*, dispatch_function_t) noexcept>);
static_assert(same<decltype(&dispatch_after_f), void (*)(dispatch_time_t, dispatch_queue_t, void*,
                                                         dispatch_function_t) noexcept>);
static_assert(
    same<decltype(&dispatch_time), dispatch_time_t (*)(dispatch_time_t, std::int64_t) noexcept>);
static_assert(same<decltype(&dispatch_queue_create),
                   dispatch_queue_t (*)(const char*, dispatch_queue_attr_t) noexcept>);
static_assert(same<decltype(&dispatch_source_create),
                   dispatch_source_t (*)(dispatch_source_type_t, std::uintptr_t, std::uintptr_t,
                                         dispatch_queue_t) noexcept>);
static_assert(same<decltype(&dispatch_source_set_event_handler_f),
                   void (*)(dispatch_source_t, dispatch_function_t) noexcept>);
static_assert(same<decltype(&dispatch_set_context), void (*)(dispatch_object_t, void*) noexcept>);
static_assert(same<decltype(&dispatch_resume), void (*)(dispatch_object_t) noexcept>);
static_assert(same<decltype(&dispatch_release), void (*)(dispatch_object_t) noexcept>);
static_assert(same<decltype(&pthread_main_np), int (*)()>);
static_assert(same<decltype(&_NSGetExecutablePath), int (*)(char*, std::uint32_t*)>);

}  // namespace
