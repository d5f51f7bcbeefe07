// From a command to a MakeCall on this port: every call to the system, in order.
#include <algorithm>

#include "app/AppDelegate.h"
#include "hotkey/QKHotKey.h"
#include "hotkey/QKHotKeyCenter.h"
#include "platform/VirtualKeys.h"
#include "platform/macos/Desktop.h"
#include "platform/macos/HotKeyEvents.h"
#include "tests/platform/macos/AppleTest.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/PlatformDoubles.h"

namespace seldial {
namespace {

using platform::macos::CarbonHotKeyEvents;
using platform::macos::DispatchMainQueue;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::apple;

constexpr std::uint16_t kKeyV = 9;
constexpr OSType kSignature = 0x68746B31;  // htk1

class MacHotKeyCenter : public tests::AppleTest {
 protected:
  MacHotKeyCenter() {
    QKHotKeyCenter::setHotKeyEvents(std::make_shared<CarbonHotKeyEvents>());
    center = QKHotKeyCenter::sharedHotKeyCenter();
    center->init();
  }
  ~MacHotKeyCenter() override {
    center->unregisterAllHotKeys();
    QKHotKeyCenter::setHotKeyEvents(nullptr);
  }

  std::shared_ptr<QKHotKeyCenter> center;
};

TEST_F(MacHotKeyCenter, InstallsItsHandlerWhenItIsCreated) {
  EXPECT_THAT(newCalls(), ElementsAre("InstallEventHandler on application keyb 6"));
}

TEST_F(MacHotKeyCenter, AReleaseCallsTheTaskWithASyntheticKeyUpEvent) {
  std::vector<QKKeyEvent> events;
  center->registerHotKeyWithKeyCode(
      kKeyV, platform::kModifierFlagCommand | platform::kModifierFlagControl,
      [&events](const QKKeyEvent& event) { events.push_back(event); });
  EXPECT_EQ(newCalls().back(), "RegisterEventHotKey 9 4352 htk1 1 on dispatcher options 0");

  apple().fields = {640.5, 400.25, 0x140101, 98765.5};
  EXPECT_EQ(apple().releaseHotKey({kSignature, 1}), noErr);
  EXPECT_THAT(newCalls(), ElementsAre("open scope", "GetEventParameter hot key event ---- hkid 8",
                                      "eventFields hot key event", "close scope"));
  ASSERT_THAT(events, SizeIs(1));
  const QKKeyEvent& event = events[0];
  EXPECT_EQ(event.type, 11U);
  EXPECT_EQ(event.locationX, 640.5);
  EXPECT_EQ(event.locationY, 400.25);
  EXPECT_EQ(event.modifierFlags, 0x140101U);
  EXPECT_EQ(event.timestamp, 98765.5);
  EXPECT_EQ(event.windowNumber, -1);
  EXPECT_EQ(event.characters, "");
  EXPECT_EQ(event.charactersIgnoringModifiers, "");
  EXPECT_FALSE(event.isARepeat);
  EXPECT_EQ(event.keyCode, kKeyV);
}

TEST_F(MacHotKeyCenter, ARefusedRegistrationUsesUpNoId) {
  apple().registrationStatus = -9868;
  EXPECT_EQ(center->registerHotKeyWithKeyCode(kKeyV, 0, nullptr), nullptr);
  apple().registrationStatus = noErr;
  EXPECT_NE(center->registerHotKeyWithKeyCode(kKeyV, 0, nullptr), nullptr);
  EXPECT_EQ(newCalls().back(), "RegisterEventHotKey 9 0 htk1 1 on dispatcher options 0");
}

TEST_F(MacHotKeyCenter, AnUnreadableParameterInvokesNothing) {
  center->registerHotKeyWithKeyCode(kKeyV, 0, [](const QKKeyEvent&) { FAIL() << "not this one"; });
  apple().parameterStatus = -9870;
  EXPECT_EQ(apple().releaseHotKey({kSignature, 1}), noErr);
}

TEST_F(MacHotKeyCenter, AnIdOfTwoHotKeysIsLoggedToTheSystem) {
  const auto first = center->registerHotKeyWithKeyCode(kKeyV, 0, nullptr);
  const auto second = center->registerHotKeyWithKeyCode(kKeyV + 1, 0, nullptr);
  second->hotKeyID = first->hotKeyID;
  newCalls();
  EXPECT_EQ(apple().releaseHotKey({kSignature, 1}), noErr);
  EXPECT_THAT(newCalls(), testing::Contains("NSLog ERROR!"));
}

TEST_F(MacHotKeyCenter, UnregisteringReleasesTheReferenceOnce) {
  const auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, 0, nullptr);
  newCalls();
  center->unregisterHotKey(hotKey);
  center->unregisterHotKey(hotKey);
  EXPECT_THAT(newCalls(), ElementsAre("UnregisterEventHotKey hot key 1"));
}

class MacDialing : public tests::AppleTest {
 protected:
  MacDialing() {
    app->connectToDesktop();
    QKHotKeyCenter::sharedHotKeyCenter()->init();
    newCalls();
  }
  ~MacDialing() override {
    QKHotKeyCenter::sharedHotKeyCenter()->unregisterAllHotKeys();
    QKHotKeyCenter::setHotKeyEvents(nullptr);
  }

  tests::CapturedOutput output;
  std::shared_ptr<AppDelegate> app = AppDelegate::init(
      {std::make_shared<tests::RecordingApplication>(&apple().calls),
       std::make_shared<DispatchMainQueue>(), platform::macos::makePorts({}).connectDesktop});
};

TEST_F(MacDialing, TheCopyKeystrokeIsPostedAtTheHardwareTap) {
  app->copySelectionToPasteboard();
  EXPECT_THAT(
      newCalls(),
      ElementsAre("CGEventSourceCreate 1", "CGEventCreateKeyboardEvent event source 8 down",
                  "CGEventCreateKeyboardEvent event source 8 up", "CGEventSetFlags 8 down 1048576",
                  "CGEventPost 0 8 down", "CGEventPost 0 8 up", "CFRelease 8 up",
                  "CFRelease 8 down", "CFRelease event source"));
}

TEST_F(MacDialing, TheCopyKeystrokeNeedsNoSource) {
  apple().refuseEventSource = true;
  app->copySelectionToPasteboard();
  EXPECT_THAT(newCalls(),
              ElementsAre("CGEventSourceCreate 1", "CGEventCreateKeyboardEvent null 8 down",
                          "CGEventCreateKeyboardEvent null 8 up", "CGEventSetFlags 8 down 1048576",
                          "CGEventPost 0 8 down", "CGEventPost 0 8 up", "CFRelease 8 up",
                          "CFRelease 8 down"));
}

TEST_F(MacDialing, WithoutBothEventsNothingIsPostedAndAllAreReleased) {
  app->FlagLog = true;
  apple().refuseKeyDown = true;
  app->copySelectionToPasteboard();
  EXPECT_THAT(newCalls(),
              ElementsAre("CGEventSourceCreate 1", "CGEventCreateKeyboardEvent event source 8 down",
                          "CGEventCreateKeyboardEvent event source 8 up", "CFRelease 8 up",
                          "CFRelease event source"));
  apple().refuseKeyDown = false;
  apple().refuseKeyUp = true;
  app->copySelectionToPasteboard();
  EXPECT_THAT(newCalls(),
              ElementsAre("CGEventSourceCreate 1", "CGEventCreateKeyboardEvent event source 8 down",
                          "CGEventCreateKeyboardEvent event source 8 up", "CFRelease 8 down",
                          "CFRelease event source"));
  const auto lines = output.lines();
  ASSERT_THAT(lines, SizeIs(2));
  for (const auto& line : lines) {
    EXPECT_THAT(line, testing::EndsWith("> internal error; copy selection to pastboard"));
  }
}

TEST_F(MacDialing, FromTheCommandToTheMakeCall) {
  app->processInputString(
      R"({"command":"SetHotKey","modifierCommand":true,"virtualkey":9,"readdelay":20})");
  EXPECT_THAT(newCalls(), ElementsAre("RegisterEventHotKey 9 256 htk1 1 on dispatcher options 0",
                                      "CGRequestPostEventAccess"));

  EXPECT_EQ(apple().releaseHotKey({kSignature, 1}), noErr);
  EXPECT_THAT(
      newCalls(),
      ElementsAre("open scope", "GetEventParameter hot key event ---- hkid 8",
                  "eventFields hot key event", "clearContents", "CGEventSourceCreate 1",
                  "CGEventCreateKeyboardEvent event source 8 down",
                  "CGEventCreateKeyboardEvent event source 8 up", "CGEventSetFlags 8 down 1048576",
                  "CGEventPost 0 8 down", "CGEventPost 0 8 up", "CFRelease 8 up",
                  "CFRelease 8 down", "CFRelease event source", "usleep 20000",
                  "stringForType public.utf8-plain-text", "close scope"));

  app->processInputString(R"({"command":"SetHotKey"})");
  EXPECT_THAT(newCalls(), ElementsAre("UnregisterEventHotKey hot key 1"));
}

TEST_F(MacDialing, ConsentIsRequestedForTheFirstHotKeyAndDoesNotChangeTheAnswer) {
  apple().hasConsent = false;
  const std::string command = R"({"command":"SetHotKey","modifierCommand":true,"virtualkey":9})";
  testing::internal::CaptureStderr();
  app->processInputString(command);
  app->processInputString(command);
  const auto errors = testing::internal::GetCapturedStderr();
  EXPECT_THAT(newCalls(), ElementsAre("RegisterEventHotKey 9 256 htk1 1 on dispatcher options 0",
                                      "CGRequestPostEventAccess", "UnregisterEventHotKey hot key 1",
                                      "RegisterEventHotKey 9 256 htk1 2 on dispatcher options 0"));
  EXPECT_THAT(errors, testing::StartsWith("seldial: macOS does not let Seldial press Command-C"));
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 1);
  const std::string set = R"({"response":"HotkeyState","result":true})";
  EXPECT_THAT(output.lines(), ElementsAre(set, set));
}

}  // namespace
}  // namespace seldial
