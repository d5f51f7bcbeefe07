// The characters that keys type, from the text input sources and their Unicode key layouts.
#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>

#include "platform/Keyboard.h"

namespace seldial::platform {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool isHighSurrogate(std::uint32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}

bool isLowSurrogate(std::uint32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

char byte(std::uint32_t value) {
  return static_cast<char>(static_cast<unsigned char>(value));
}

void append(std::string& text, std::uint32_t character) {
  const auto following = [character](unsigned shift) {
    return byte(0x80U | ((character >> shift) & 0x3FU));
  };
  if (character < 0x80) {
    text += byte(character);
  } else if (character < 0x800) {
    text += {byte(0xC0U | (character >> 6U)), following(0)};
  } else if (character < 0x10000) {
    text += {byte(0xE0U | (character >> 12U)), following(6), following(0)};
  } else {
    text += {byte(0xF0U | (character >> 18U)), following(12), following(6), following(0)};
  }
}

/// Converts UTF-16 to UTF-8. A lone surrogate becomes U+FFFD.
std::string utf8FromUtf16(const UniChar* units, UniCharCount length) {
  std::string text;
  for (UniCharCount i = 0; i < length; ++i) {
    std::uint32_t character = units[i];
    if (isHighSurrogate(character) && i + 1 < length && isLowSurrogate(units[i + 1])) {
      character = 0x10000 + ((character - 0xD800) << 10U) + (units[++i] - 0xDC00U);
    } else if (isHighSurrogate(character) || isLowSurrogate(character)) {
      character = kReplacement;
    }
    append(text, character);
  }
  return text;
}

constexpr UniCharCount kMaxUnits = 255;

/// Owns a text input source; there may be none.
class InputSource {
 public:
  explicit InputSource(TISInputSourceRef source) : source_(source) {}
  ~InputSource() {
    if (source_ != nullptr) CFRelease(source_);
  }
  InputSource(const InputSource&) = delete;
  InputSource& operator=(const InputSource&) = delete;

  /// The Unicode key layout, which lives as long as the source; null if there is none, as for input
  /// methods.
  [[nodiscard]] const UCKeyboardLayout* layout() const {
    if (source_ == nullptr) return nullptr;
    const void* const data = TISGetInputSourceProperty(source_, kTISPropertyUnicodeKeyLayoutData);
    if (data == nullptr) return nullptr;
    return reinterpret_cast<const UCKeyboardLayout*>(
        CFDataGetBytePtr(static_cast<CFDataRef>(data)));
  }

 private:
  TISInputSourceRef source_;
};

std::optional<std::string> translateBy(const UCKeyboardLayout* layout, std::uint16_t keyCode,
                                       std::uint32_t modifierKeyState) {
  UInt32 deadKeyState = 0;
  UniChar units[kMaxUnits];
  UniCharCount length = 0;
  const OSStatus status =
      UCKeyTranslate(layout, keyCode, kUCKeyActionDown, modifierKeyState, LMGetKbdType(), 0,
                     &deadKeyState, kMaxUnits, &length, units);
  if (status != noErr || length == 0) return {};
  return utf8FromUtf16(units, length);
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
