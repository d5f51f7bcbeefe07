// Hot keys on a real X server, pressed on a physical keyboard.
#include "platform/VirtualKeys.h"
#include "tests/platform/x11/X11Test.h"

namespace seldial::platform::x11 {
namespace {

using HotKeyGrabs = X11Test;

TEST_F(HotKeyGrabs, FiresOnceOnReleaseNotOnPress) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  keyboard.press(kControlAltKeys);
  keyboard.press(kKeyD);
  port.settle();
  EXPECT_EQ(port.releases().size(), 0U);
  keyboard.release(kKeyD);
  port.waitForReleases(1);
  keyboard.release(kControlAltKeys);
  port.settle();
  EXPECT_EQ(port.releases().size(), 1U);
}

TEST_F(HotKeyGrabs, FiresWhateverIsReleasedFirst) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  const std::vector<std::vector<std::uint8_t>> orders{{kKeyD, kKeyLeftControl, kKeyLeftAlt},
                                                      {kKeyLeftControl, kKeyLeftAlt, kKeyD},
                                                      {kKeyLeftAlt, kKeyD, kKeyLeftControl}};
  for (std::size_t i = 0; i < orders.size(); ++i) {
    keyboard.press(kControlAltKeys);
    keyboard.press(kKeyD);
    keyboard.release(orders[i]);
    port.waitForReleases(i + 1);
    port.settle();
    EXPECT_EQ(port.releases().size(), i + 1);
  }
}

TEST_F(HotKeyGrabs, FiresUnderEveryStateOfTheLocks) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  std::size_t uses = 0;
  // A Gray code: one lock key is tapped at a time, and all four states are passed.
  for (const auto lock : {kKeyCapsLock, kKeyNumLock, kKeyCapsLock, kKeyNumLock}) {
    keyboard.tap(lock);
    useHotKey();
    port.waitForReleases(++uses);
  }
  EXPECT_EQ(keyboard.modifiers(), 0U);
  port.settle();
  EXPECT_EQ(port.releases().size(), uses);
}

TEST_F(HotKeyGrabs, AKeyHeldLongFiresOnceAndRepeatsNothing) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  keyboard.press(kControlAltKeys);
  keyboard.hold(kKeyD, std::chrono::milliseconds(1500));
  keyboard.release(kControlAltKeys);
  port.waitForReleases(1);
  port.settle();
  EXPECT_EQ(port.releases().size(), 1U);
}

TEST_F(HotKeyGrabs, OtherChordsOfTheSameKeyDoNotFire) {
  const XClient client(server.display());
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  keyboard.tap(kKeyD);
  keyboard.press({kKeyLeftControl, kKeyD});
  keyboard.release({kKeyD, kKeyLeftControl});
  keyboard.press({kKeyLeftShift, kKeyLeftControl, kKeyLeftAlt, kKeyD});
  keyboard.release({kKeyD, kKeyLeftAlt, kKeyLeftControl, kKeyLeftShift});
  client.waitForRelease(kKeyLeftShift);
  port.settle();
  EXPECT_EQ(port.releases().size(), 0U);
}

TEST_F(HotKeyGrabs, TheApplicationDoesNotSeeTheHotKey) {
  const XClient client(server.display());
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  useHotKey();
  port.waitForReleases(1);
  client.waitForRelease(kKeyLeftAlt);
  for (const auto& record : client.keys()) EXPECT_NE(record.key, kKeyD);
}

TEST_F(HotKeyGrabs, EachModifierIsTheOneThatCarriesIt) {
  const std::vector<std::pair<std::uint32_t, std::uint8_t>> modifiers{
      {kHotKeyControl, kKeyRightControl},
      {kHotKeyShift, kKeyLeftShift},
      {kHotKeyOption, kKeyLeftAlt},
      {kHotKeyCommand, kKeyLeftSuper}};
  std::size_t uses = 0;
  for (const auto& [modifier, key] : modifiers) {
    const auto ref = port.registerHotKey(kVK_ANSI_D, modifier, key);
    ASSERT_TRUE(ref);
    keyboard.press({key, kKeyD});
    keyboard.release({kKeyD, key});
    port.waitForReleases(++uses);
    EXPECT_EQ(port.releases().back().hotKeyID.id, key);
    port.unregisterHotKey(*ref);
  }
}

TEST_F(HotKeyGrabs, ABareKeyCanBeAHotKey) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, 0));
  keyboard.tap(kKeyD);
  port.waitForReleases(1);
}

TEST_F(HotKeyGrabs, TheReleaseReportsPositionTimeAndHeldModifiers) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt, 77));
  keyboard.movePointer(123, 45);
  keyboard.press(kControlAltKeys);
  keyboard.press(kKeyD);
  keyboard.release({kKeyLeftControl, kKeyD, kKeyLeftAlt});
  port.waitForReleases(1);
  const auto release = port.releases().front();
  EXPECT_EQ(release.hotKeyID.id, 77U);
  EXPECT_EQ(release.event.locationX, 123);
  EXPECT_EQ(release.event.locationY, 45);
  EXPECT_EQ(release.event.modifierFlags, kModifierFlagOption);
  EXPECT_GT(release.event.timestamp, 0);
}

TEST_F(HotKeyGrabs, AnUnregisteredHotKeyIsTheApplicationsAgain) {
  const XClient client(server.display());
  const auto ref = port.registerHotKey(kVK_ANSI_D, kControlAlt);
  ASSERT_TRUE(ref);
  port.unregisterHotKey(*ref);
  useHotKey();
  client.waitForRelease(kKeyD);
  port.settle();
  EXPECT_EQ(port.releases().size(), 0U);
}

TEST_F(HotKeyGrabs, AKeyThatIsDownWhenItIsRegisteredFiresWithItsNextPress) {
  keyboard.press(kControlAltKeys);
  keyboard.press(kKeyD);
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  keyboard.release(kKeyD);
  port.settle();
  EXPECT_EQ(port.releases().size(), 0U);
  keyboard.tap(kKeyD);
  port.waitForReleases(1);
  keyboard.release(kControlAltKeys);
}

TEST_F(HotKeyGrabs, AHotKeyRegisteredAnewWhileItIsHeldFiresWithItsNextPress) {
  const auto before = port.registerHotKey(kVK_ANSI_D, kControlAlt, 1);
  ASSERT_TRUE(before);
  keyboard.press(kControlAltKeys);
  keyboard.press(kKeyD);
  port.unregisterHotKey(*before);
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt, 2));
  keyboard.release(kKeyD);
  port.settle();
  EXPECT_EQ(port.releases().size(), 0U);
  keyboard.tap(kKeyD);
  port.waitForReleases(1);
  keyboard.release(kControlAltKeys);
}

TEST_F(HotKeyGrabs, AnotherKeyPressedWhileAHotKeyIsHeldIsNotAUse) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt, 1));
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_F, 0, 2));
  keyboard.press(kControlAltKeys);
  keyboard.press(kKeyD);
  keyboard.tap(kKeyF);
  keyboard.release(kKeyD);
  keyboard.release(kControlAltKeys);
  port.waitForReleases(1);
  port.settle();
  ASSERT_EQ(port.releases().size(), 1U);
  EXPECT_EQ(port.releases()[0].hotKeyID.id, 1U);
}

TEST_F(HotKeyGrabs, TwoHotKeysOnOneKeyAreDistinguished) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kHotKeyControl, 1));
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt, 2));
  useHotKey();
  port.waitForReleases(1);
  EXPECT_EQ(port.releases()[0].hotKeyID.id, 2U);
  keyboard.press({kKeyLeftControl, kKeyD});
  keyboard.release({kKeyD, kKeyLeftControl});
  port.waitForReleases(2);
  EXPECT_EQ(port.releases()[1].hotKeyID.id, 1U);
}

TEST_F(HotKeyGrabs, APressThatArrivesWhileRequestsAreSentIsNotOverlooked) {
  XClient client(server.display());
  client.own("CLIPBOARD", answersWith("text"));
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  port.call([&] {
    // Reading leaves an unsent request behind; when it is sent, the press has arrived.
    EXPECT_EQ(port.clipboard().text(), "text");
    useHotKey();
  });
  port.waitForReleases(1);
}

TEST_F(HotKeyGrabs, FiresWhileAMouseButtonIsHeld) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  keyboard.holdMouseButton(true);
  useHotKey();
  port.waitForReleases(1);
  keyboard.holdMouseButton(false);
}

TEST_F(HotKeyGrabs, FiresAgainAfterAnotherProgramsMenuHadTheKeyboard) {
  XClient client(server.display());
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  client.grabKeyboard(true);
  useHotKey();
  client.waitForRelease(kKeyD);
  client.grabKeyboard(false);
  useHotKey();
  port.waitForReleases(1);
  port.settle();
  EXPECT_EQ(port.releases().size(), 1U);
}

}  // namespace
}  // namespace seldial::platform::x11
