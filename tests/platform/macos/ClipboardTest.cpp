#include "platform/macos/Desktop.h"
#include "tests/platform/macos/AppleTest.h"

namespace seldial::platform::macos {
namespace {

using testing::ElementsAre;
using tests::apple;

struct MacClipboardTest : tests::AppleTest {
  MacClipboard clipboard;
};

TEST_F(MacClipboardTest, PostsCommandCDownThenCUpAtTheHardwareTap) {
  EXPECT_TRUE(clipboard.copySelection());
  EXPECT_THAT(
      apple().calls,
      ElementsAre("CGEventSourceCreate 1", "CGEventCreateKeyboardEvent event source 8 down",
                  "CGEventCreateKeyboardEvent event source 8 up", "CGEventSetFlags 8 down 1048576",
                  "CGEventPost 0 8 down", "CGEventPost 0 8 up", "CFRelease 8 up",
                  "CFRelease 8 down", "CFRelease event source"));
}

TEST_F(MacClipboardTest, PostsWithoutAnEventSourceToo) {
  apple().refuseEventSource = true;
  EXPECT_TRUE(clipboard.copySelection());
  EXPECT_THAT(apple().calls,
              ElementsAre("CGEventSourceCreate 1", "CGEventCreateKeyboardEvent null 8 down",
                          "CGEventCreateKeyboardEvent null 8 up", "CGEventSetFlags 8 down 1048576",
                          "CGEventPost 0 8 down", "CGEventPost 0 8 up", "CFRelease 8 up",
                          "CFRelease 8 down"));
}

TEST_F(MacClipboardTest, PostsNothingWithoutTheKeyDownEvent) {
  apple().refuseKeyDown = true;
  EXPECT_FALSE(clipboard.copySelection());
  EXPECT_THAT(apple().calls,
              ElementsAre("CGEventSourceCreate 1", "CGEventCreateKeyboardEvent event source 8 down",
                          "CGEventCreateKeyboardEvent event source 8 up", "CFRelease 8 up",
                          "CFRelease event source"));
}

TEST_F(MacClipboardTest, PostsNothingWithoutTheKeyUpEvent) {
  apple().refuseKeyUp = true;
  EXPECT_FALSE(clipboard.copySelection());
  EXPECT_THAT(apple().calls,
              ElementsAre("CGEventSourceCreate 1", "CGEventCreateKeyboardEvent event source 8 down",
                          "CGEventCreateKeyboardEvent event source 8 up", "CFRelease 8 down",
                          "CFRelease event source"));
}

TEST_F(MacClipboardTest, ReadsThePlainTextOfTheGeneralPasteboard) {
  apple().pasteboard = "+31 20 123 4567";
  EXPECT_EQ(clipboard.text(), "+31 20 123 4567");
  EXPECT_THAT(apple().calls, ElementsAre("stringForType public.utf8-plain-text"));
}

TEST_F(MacClipboardTest, ClearsTheGeneralPasteboard) {
  apple().pasteboard = "old";
  clipboard.clear();
  EXPECT_EQ(clipboard.text(), std::nullopt);
  EXPECT_THAT(apple().calls, ElementsAre("clearContents", "stringForType public.utf8-plain-text"));
}

constexpr const char* kNoConsentLine =
    "seldial: macOS does not let Seldial press Command-C yet; see System Settings > "
    "Privacy & Security > Accessibility\n";

struct MacConsent : tests::AppleTest {
  /// What requestConsent() writes to standard error.
  static std::string requestedConsent() {
    testing::internal::CaptureStderr();
    requestConsent();
    return testing::internal::GetCapturedStderr();
  }
};

TEST_F(MacConsent, IsRequestedFromCoreGraphicsOnMacOS11AndReportedWhenMissing) {
  apple().hasConsent = false;
  EXPECT_EQ(requestedConsent(), kNoConsentLine);
  EXPECT_THAT(apple().calls, ElementsAre("CGRequestPostEventAccess"));
}

TEST_F(MacConsent, IsRequestedFromAccessibilityWithAPromptBeforeMacOS11) {
  apple().is11 = false;
  apple().hasConsent = false;
  EXPECT_EQ(requestedConsent(), kNoConsentLine);
  EXPECT_THAT(apple().calls,
              ElementsAre("AXIsProcessTrustedWithOptions with prompt", "CFRelease with prompt"));
}

TEST_F(MacConsent, IsNotReportedOnceItIsGiven) {
  EXPECT_EQ(requestedConsent(), "");
  apple().is11 = false;
  EXPECT_EQ(requestedConsent(), "");
}

}  // namespace
}  // namespace seldial::platform::macos
