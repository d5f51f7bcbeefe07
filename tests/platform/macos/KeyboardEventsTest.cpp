#include "platform/macos/KeyboardEvents.h"
#include "tests/platform/macos/AppleTest.h"

namespace seldial::platform::macos {
namespace {

using testing::ElementsAre;
using tests::apple;

struct MacKeyboardEvents : tests::AppleTest {
  CoreGraphicsKeyboardEvents events;
};

TEST_F(MacKeyboardEvents, AreMadeFromTheSourceFlaggedAndPosted) {
  {
    const auto source = events.createSource(kEventSourceStateHIDSystemState);
    const auto event = events.createKeyboardEvent(source.get(), 8, true);
    event->setFlags(0x100000);
    event->post(kHIDEventTap);
  }
  EXPECT_THAT(apple().calls,
              ElementsAre("CGEventSourceCreate 1", "CGEventCreateKeyboardEvent event source 8 down",
                          "CGEventSetFlags 8 down 1048576", "CGEventPost 0 8 down",
                          "CFRelease 8 down", "CFRelease event source"));
}

TEST_F(MacKeyboardEvents, PassEveryValueOnAsItComes) {
  const auto source = events.createSource(-1);
  const auto event = events.createKeyboardEvent(source.get(), 65535, false);
  event->setFlags(0xFEDCBA9876543210);
  event->post(2);
  EXPECT_THAT(
      apple().calls,
      ElementsAre("CGEventSourceCreate -1", "CGEventCreateKeyboardEvent event source 65535 up",
                  "CGEventSetFlags 65535 up 18364758544493064720", "CGEventPost 2 65535 up"));
}

TEST_F(MacKeyboardEvents, HaveNoSourceWhereTheSystemGivesNone) {
  apple().refuseEventSource = true;
  EXPECT_EQ(events.createSource(1), nullptr);
  EXPECT_THAT(newCalls(), ElementsAre("CGEventSourceCreate 1"));
}

TEST_F(MacKeyboardEvents, AreMadeWithoutASourceToo) {
  EXPECT_NE(events.createKeyboardEvent(nullptr, 8, true), nullptr);
  EXPECT_THAT(apple().calls,
              ElementsAre("CGEventCreateKeyboardEvent null 8 down", "CFRelease 8 down"));
}

TEST_F(MacKeyboardEvents, AreNoneWhereTheSystemMakesNone) {
  apple().refuseKeyDown = true;
  EXPECT_EQ(events.createKeyboardEvent(nullptr, 8, true), nullptr);
  EXPECT_THAT(apple().calls, ElementsAre("CGEventCreateKeyboardEvent null 8 down"));
}

}  // namespace
}  // namespace seldial::platform::macos
