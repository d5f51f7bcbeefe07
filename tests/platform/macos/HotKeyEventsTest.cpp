#include "platform/macos/HotKeyEvents.h"
#include "tests/platform/macos/AppleTest.h"

namespace seldial::platform::macos {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::apple;

constexpr std::uint32_t kSignature = 0x68746B31;  // htk1

struct MacHotKeyEvents : tests::AppleTest {
  void installHandler() {
    events.installReleasedHandler([this](const HotKeyReleased& event) {
      apple().calls.emplace_back("handler");
      released.push_back(event);
    });
  }

  CarbonHotKeyEvents events;
  std::vector<HotKeyReleased> released;
};

TEST_F(MacHotKeyEvents, InstallOneHandlerForReleasesOnTheApplication) {
  installHandler();
  EXPECT_THAT(apple().calls, ElementsAre("InstallEventHandler on application keyb 6"));
}

TEST_F(MacHotKeyEvents, InstallTheHandlerOnceAndReportToTheLatestOne) {
  std::vector<std::string> told;
  events.installReleasedHandler([&told](const HotKeyReleased&) { told.emplace_back("first"); });
  events.installReleasedHandler([&told](const HotKeyReleased&) { told.emplace_back("second"); });
  EXPECT_THAT(newCalls(), SizeIs(1));
  apple().releaseHotKey({kSignature, 1});
  EXPECT_THAT(told, ElementsAre("second"));
}

TEST_F(MacHotKeyEvents, ReportAFailedInstallationAndTryAgainTheNextTime) {
  apple().handlerStatus = -9860;
  testing::internal::CaptureStderr();
  installHandler();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "seldial: no handler for hot keys (-9860)\n");
  apple().handlerStatus = noErr;
  testing::internal::CaptureStderr();
  installHandler();
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_THAT(newCalls(), ElementsAre("InstallEventHandler on application keyb 6",
                                      "InstallEventHandler on application keyb 6"));
  EXPECT_NE(apple().handler, nullptr);
}

TEST_F(MacHotKeyEvents, RegisterWithTheDispatcherAndWithoutOptions) {
  const auto ref = events.registerHotKey(9, 0x1100, {kSignature, 7});
  ASSERT_TRUE(ref);
  EXPECT_THAT(newCalls(), ElementsAre("RegisterEventHotKey 9 4352 htk1 7 on dispatcher options 0"));
  events.unregisterHotKey(*ref);
  EXPECT_THAT(newCalls(), ElementsAre("UnregisterEventHotKey hot key 7"));
}

TEST_F(MacHotKeyEvents, ReturnNothingForARefusedRegistration) {
  for (const OSStatus status : {-9878, -9868, 1}) {
    apple().registrationStatus = status;
    EXPECT_FALSE(events.registerHotKey(9, 0x100, {kSignature, 1}));
  }
  EXPECT_THAT(apple().calls, SizeIs(3));
}

TEST_F(MacHotKeyEvents, CallFirstRegisteredOnce) {
  CarbonHotKeyEvents telling([] { apple().calls.emplace_back("first registered"); });
  apple().registrationStatus = -9878;
  EXPECT_FALSE(telling.registerHotKey(9, 0x100, {kSignature, 1}));
  EXPECT_THAT(newCalls(), SizeIs(1));
  apple().registrationStatus = noErr;
  const auto first = telling.registerHotKey(9, 0x100, {kSignature, 1});
  EXPECT_EQ(newCalls().back(), "first registered");
  telling.unregisterHotKey(*first);
  telling.unregisterHotKey(*telling.registerHotKey(9, 0x100, {kSignature, 2}));
  EXPECT_THAT(newCalls(), testing::Not(testing::Contains("first registered")));
}

TEST_F(MacHotKeyEvents, LogErrorsToTheSystem) {
  EXPECT_TRUE(events.logError("ERROR!"));
  EXPECT_THAT(apple().calls, ElementsAre("NSLog ERROR!"));
}

TEST_F(MacHotKeyEvents, IgnoreAFailedUnregistration) {
  const auto ref = events.registerHotKey(9, 0x100, {kSignature, 1});
  apple().unregistrationStatus = -9879;
  events.unregisterHotKey(*ref);
  EXPECT_THAT(apple().living, IsEmpty());
}

TEST_F(MacHotKeyEvents, HandleAReleaseWithinAnAutoreleaseScope) {
  installHandler();
  newCalls();
  apple().fields = {12.5, -3.25, 0x140000, 123.75};
  EXPECT_EQ(apple().releaseHotKey({kSignature, 7}), noErr);
  EXPECT_THAT(newCalls(), ElementsAre("open scope", "GetEventParameter hot key event ---- hkid 8",
                                      "eventFields hot key event", "handler", "close scope"));
  ASSERT_THAT(released, SizeIs(1));
  EXPECT_EQ(released[0].hotKeyID.signature, kSignature);
  EXPECT_EQ(released[0].hotKeyID.id, 7U);
  EXPECT_EQ(released[0].event.locationX, 12.5);
  EXPECT_EQ(released[0].event.locationY, -3.25);
  EXPECT_EQ(released[0].event.modifierFlags, 0x140000U);
  EXPECT_EQ(released[0].event.timestamp, 123.75);
}

TEST_F(MacHotKeyEvents, ReportAnUnreadableParameterAsIdZero) {
  installHandler();
  apple().parameterStatus = -9870;
  EXPECT_EQ(apple().releaseHotKey({kSignature, 7}), noErr);
  ASSERT_THAT(released, SizeIs(1));
  EXPECT_EQ(released[0].hotKeyID.signature, 0U);
  EXPECT_EQ(released[0].hotKeyID.id, 0U);
}

TEST_F(MacHotKeyEvents, IgnoreTheSignature) {
  installHandler();
  EXPECT_EQ(apple().releaseHotKey({0x78787878, 7}), noErr);
  ASSERT_THAT(released, SizeIs(1));
  EXPECT_EQ(released[0].hotKeyID.id, 7U);
}

}  // namespace
}  // namespace seldial::platform::macos
