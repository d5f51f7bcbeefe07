// A double of the system: the functions declared in include/ record their calls here.
#pragma once

#include <Carbon/Carbon.h>
#include <dispatch/dispatch.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/macos/Cocoa.h"

namespace seldial::tests {

/// Records every call, in order, and returns what the test has set. AppleTest creates a new one for
/// each test.
struct Apple {
  /// Submitted work, which the test can run.
  struct Submitted {
    const dispatch_object_s* queue = nullptr;
    dispatch_time_t when = 0;
    void* context = nullptr;
    dispatch_function_t work = nullptr;

    void run() const { work(context); }
  };

  /// A signal source.
  struct Source {
    dispatch_source_type_t type = nullptr;
    std::uintptr_t handle = 0;
    dispatch_queue_t queue = nullptr;
    void* context = nullptr;
    dispatch_function_t handler = nullptr;
    bool resumed = false;
  };

  /// The system's answers.
  bool is11 = true;        ///< macOS 11 or later
  bool hasConsent = true;  ///< to post events
  bool refuseEventSource = false;
  bool refuseKeyDown = false;
  bool refuseKeyUp = false;
  OSStatus handlerStatus = noErr;       ///< of InstallEventHandler()
  OSStatus registrationStatus = noErr;  ///< of RegisterEventHotKey()
  OSStatus unregistrationStatus = noErr;
  OSStatus parameterStatus = noErr;  ///< of GetEventParameter(); on failure it returns no data
  EventHotKeyID parameter{};         ///< the data that it returns otherwise
  seldial::platform::macos::EventFields fields;
  bool hasCurrentSource = true;
  bool currentSourceHasLayout = true;
  bool hasFallbackSource = true;
  bool fallbackSourceHasLayout = true;
  OSStatus translationStatus = noErr;
  std::vector<UniChar> translation = {'q'};
  bool onMainThread = true;
  std::string executable;                 ///< as it was started
  std::optional<std::string> pasteboard;  ///< the text of the general pasteboard

  /// The calls of the port, and the objects that it has created.
  std::vector<std::string> calls;
  std::vector<Submitted> submitted;
  int queues = 0;  ///< made so far
  std::map<const dispatch_object_s*, Source> sources;
  EventHandlerUPP handler = nullptr;
  void* handlerUserData = nullptr;
  std::map<std::uintptr_t, std::string> living;  ///< objects not yet released

  /// Acts as the user who releases a hot key; returns what the installed handler returned.
  OSStatus releaseHotKey(EventHotKeyID hotKeyID);

  /// A new object with that name; CFRelease() or dispatch_release() destroys it.
  std::uintptr_t make(const std::string& name);
  void release(const void* object);
  [[nodiscard]] std::string nameOf(const void* object) const;

 private:
  std::uintptr_t lastObject_ = 0;
};

/// The system that the functions act on.
Apple& apple();

}  // namespace seldial::tests
