#include "platform/macos/GeneralPasteboard.h"

#import <AppKit/AppKit.h>

namespace seldial::platform::macos {
namespace {

/// Nothing for a text that is no Unicode (half a surrogate pair), which UTF-8 cannot say.
std::optional<std::string> utf8(NSString* text) {
  NSData* const data = [text dataUsingEncoding:NSUTF8StringEncoding];
  if (data == nil) return std::nullopt;
  return std::string(static_cast<const char*>(data.bytes), data.length);
}

class GeneralPasteboard final : public Pasteboard {
 public:
  void clearContents() override { [NSPasteboard.generalPasteboard clearContents]; }

  [[nodiscard]] std::optional<std::string> stringForType(const std::string& type) override {
    return utf8([NSPasteboard.generalPasteboard stringForType:@(type.c_str())]);
  }
};

}  // namespace

std::shared_ptr<Pasteboard> makeGeneralPasteboard() {
  return std::make_shared<GeneralPasteboard>();
}

}  // namespace seldial::platform::macos
