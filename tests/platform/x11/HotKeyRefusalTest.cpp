// Hot keys that are refused.
#include "tests/platform/x11/ForeignGrabs.h"
#include "tests/platform/x11/X11Test.h"

namespace seldial::platform::x11 {
namespace {

using HotKeyRefusal = X11Test;

TEST_F(HotKeyRefusal, AReleasedCombinationCanBeRegisteredAgain) {
  const auto ref = port.registerHotKey(kVK_ANSI_D, kControlAlt);
  ASSERT_TRUE(ref);
  EXPECT_FALSE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  port.unregisterHotKey(*ref);
  EXPECT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
}

TEST_F(HotKeyRefusal, AnUnknownKeyIsRefused) {
  for (const std::uint32_t code : {52U, 63U, 66U, 127U, 128U, 65534U}) {
    EXPECT_FALSE(port.registerHotKey(code, kControlAlt)) << code;
  }
}

TEST_F(HotKeyRefusal, ModifierAndLockKeysAreRefused) {
  for (std::uint32_t code = 54; code <= 62; ++code) {
    EXPECT_FALSE(port.registerHotKey(code, 0)) << code;
  }
  EXPECT_FALSE(port.registerHotKey(kVK_ANSI_KeypadClear, kControlAlt));
}

TEST_F(HotKeyRefusal, TheCopyKeystrokeIsRefusedButItsKeyIsNot) {
  EXPECT_FALSE(port.registerHotKey(kVK_Help, kHotKeyControl));
  EXPECT_TRUE(port.registerHotKey(kVK_Help, kControlAlt));
  EXPECT_TRUE(port.registerHotKey(kVK_ANSI_C, kHotKeyControl));
}

TEST_F(HotKeyRefusal, AModifierThatNoKeyCarriesIsRefused) {
  useLayout("no-super.xkb");
  EXPECT_FALSE(port.registerHotKey(kVK_ANSI_D, kHotKeyCommand));
  EXPECT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  useLayout("super-on-mod3.xkb");
  port.settle();
  EXPECT_FALSE(port.registerHotKey(kVK_ANSI_D, kHotKeyShift));
  EXPECT_TRUE(port.registerHotKey(kVK_ANSI_D, kHotKeyCommand));
}

TEST_F(HotKeyRefusal, ACombinationThatAnotherProgramHoldsIsRefused) {
  ForeignGrabs other(server.display());
  ASSERT_TRUE(other.grab(kKeyD, kStateControl | kStateAlt));
  EXPECT_FALSE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  EXPECT_TRUE(port.registerHotKey(kVK_ANSI_D, kHotKeyControl));
}

TEST_F(HotKeyRefusal, ARegisteredCombinationIsRefusedToOthersAndStillWorks) {
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  ForeignGrabs other(server.display());
  EXPECT_FALSE(other.grab(kKeyD, kStateControl | kStateAlt));
  useHotKey();
  port.waitForReleases(1);
}

TEST_F(HotKeyRefusal, ACombinationHeldInOneStateOfTheLocksIsRefusedAndNothingOfItKept) {
  ForeignGrabs other(server.display());
  ASSERT_TRUE(other.grab(kKeyD, kStateControl | kStateAlt | kStateNumLock));
  EXPECT_FALSE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  port.settle();
  for (const unsigned locks : {0U, kStateLock, kStateLock | kStateNumLock}) {
    EXPECT_TRUE(other.grab(kKeyD, kStateControl | kStateAlt | locks));
  }
}

TEST_F(HotKeyRefusal, ARefusedCombinationIsFreeForOthersAtOnce) {
  ForeignGrabs holder(server.display());
  ForeignGrabs third(server.display());
  ASSERT_TRUE(holder.grab(kKeyD, kStateControl | kStateAlt | kStateNumLock));
  port.call([&] {
    EXPECT_FALSE(port.hotKeys().registerHotKey(kVK_ANSI_D, kControlAlt, {}));
    // The main loop, which would flush the request, has not run since.
    for (const unsigned locks : {0U, kStateLock, kStateLock | kStateNumLock}) {
      EXPECT_TRUE(third.grab(kKeyD, kStateControl | kStateAlt | locks)) << locks;
    }
  });
}

TEST_F(HotKeyRefusal, AnImpossibleCombinationIsDistinguishedFromAHeldOne) {
  const auto can = [this](std::uint32_t keyCode, std::uint32_t modifiers) {
    return port.call([=, this] { return port.hotKeys().canBeHotKey(keyCode, modifiers); });
  };
  ASSERT_TRUE(port.registerHotKey(kVK_ANSI_D, kControlAlt));
  EXPECT_TRUE(can(kVK_ANSI_D, kControlAlt)) << "though it is held";
  EXPECT_FALSE(can(kVK_Help, kHotKeyControl)) << "the copy keystroke";
  EXPECT_TRUE(can(kVK_Help, kControlAlt));
  EXPECT_FALSE(can(kVK_Control, kHotKeyControl)) << "a modifier key";
  EXPECT_FALSE(can(52, kHotKeyControl)) << "no key";
}

}  // namespace
}  // namespace seldial::platform::x11
