// What the keys say, by the text input sources and their Unicode key layouts.
#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>

#include "platform/Keyboard.h"
#include "platform/macos/Utf8.h"

namespace seldial::platform {
namespace {

constexpr UniCharCount kMostUnits = 255;

/// A text input source, which it owns; there may be none.
class InputSource {
 public:
  explicit InputSource(TISInputSourceRef source) : source_(source) {}
  ~InputSource() {
    if (source_ != nullptr) CFRelease(source_);
  }
  InputSource(const InputSource&) = delete;
  InputSource& operator=(const InputSource&) = delete;

  /// Its Unicode key layout, which lives as long as the source; null when it has none, as input
  /// methods have none.
  [[nodiscard]] const UCKeyboardLayout* layout() const {
    if (source_ == nullptr) return nullptr;
    const void* const data = TISGetInputSourceProperty(source_, kTISPropertyUnicodeKeyLayoutData);
    if (data == nullptr) return nullptr;
    // The layout is made to be read where it lies.
    return reinterpret_cast<const UCKeyboardLayout*>(
        CFDataGetBytePtr(static_cast<CFDataRef>(data)));
  }

 private:
  TISInputSourceRef source_;
};

std::optional<std::string> translateBy(const UCKeyboardLayout* layout, std::uint16_t keyCode,
                                       std::uint32_t modifierKeyState) {
  UInt32 deadKeyState = 0;
  UniChar units[kMostUnits];
  UniCharCount length = 0;
  const OSStatus status =
      UCKeyTranslate(layout, keyCode, kUCKeyActionDown, modifierKeyState, LMGetKbdType(), 0,
                     &deadKeyState, kMostUnits, &length, units);
  if (status != noErr || length == 0) return {};
  return macos::utf8FromUtf16(units, length);
}

class InputSourceLayout final : public KeyboardLayout {
 public:
  std::optional<std::string> translate(std::uint16_t keyCode,
                                       std::uint32_t modifierKeyState) override {
    {
      const InputSource current(TISCopyCurrentKeyboardInputSource());
      if (const auto* layout = current.layout()) {
        return translateBy(layout, keyCode, modifierKeyState);
      }
    }
    const InputSource fallback(TISCopyCurrentASCIICapableKeyboardLayoutInputSource());
    if (const auto* layout = fallback.layout()) {
      return translateBy(layout, keyCode, modifierKeyState);
    }
    return {};
  }
};

}  // namespace

std::shared_ptr<KeyboardLayout> makeSystemKeyboardLayout() {
  return std::make_shared<InputSourceLayout>();
}

}  // namespace seldial::platform
