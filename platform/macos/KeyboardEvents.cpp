#include "platform/macos/KeyboardEvents.h"

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>

namespace seldial::platform::macos {
namespace {

class Source final : public KeyboardEventSource {
 public:
  explicit Source(CGEventSourceRef source) : source_(source) {}
  ~Source() override { CFRelease(source_); }
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  [[nodiscard]] CGEventSourceRef get() const { return source_; }

 private:
  CGEventSourceRef source_;
};

class Event final : public KeyboardEvent {
 public:
  explicit Event(CGEventRef event) : event_(event) {}
  ~Event() override { CFRelease(event_); }
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  void setFlags(std::uint64_t flags) override {
    CGEventSetFlags(event_, static_cast<CGEventFlags>(flags));
  }
  void post(std::uint32_t tapLocation) override {
    CGEventPost(static_cast<CGEventTapLocation>(tapLocation), event_);
  }

 private:
  CGEventRef event_;
};

}  // namespace

std::unique_ptr<KeyboardEventSource> CoreGraphicsKeyboardEvents::createSource(std::int32_t state) {
  const auto source = CGEventSourceCreate(static_cast<CGEventSourceStateID>(state));
  if (source == nullptr) return nullptr;
  return std::make_unique<Source>(source);
}

std::unique_ptr<KeyboardEvent> CoreGraphicsKeyboardEvents::createKeyboardEvent(
    KeyboardEventSource* source, std::uint16_t keyCode, bool keyDown) {
  // Every source that there is was made above.
  const auto from = source != nullptr ? static_cast<Source*>(source)->get() : nullptr;
  const auto event = CGEventCreateKeyboardEvent(from, keyCode, keyDown);
  if (event == nullptr) return nullptr;
  return std::make_unique<Event>(event);
}

}  // namespace seldial::platform::macos
