// Hot keys that cannot be had.
#include "tests/platform/x11/ForeignGrabs.h"
#include "tests/platform/x11/X11Test.h"

namespace seldial::platform::x11 {
namespace {

using HotKeyRefusal = X11Test;

TEST_F(HotKeyRefusal, ACombinationThatWasGivenBackCanBeTakenAgain) {
  const auto ref = port.registerHotKey(kVirtualD, kControlAlt);
  ASSERT_TRUE(ref);
  EXPECT_FALSE(port.registerHotKey(kVirtualD, kControlAlt));
  port.unregisterHotKey(*ref);
  EXPECT_TRUE(port.registerHotKey(kVirtualD, kControlAlt));
}

TEST_F(HotKeyRefusal, WhatIsNoKeyIsRefused) {
  for (const std::uint32_t code : {52U, 63U, 66U, 127U, 128U, 65534U}) {
    EXPECT_FALSE(port.registerHotKey(code, kControlAlt)) << code;
  }
}

TEST_F(HotKeyRefusal, ModifierAndLockKeysAreRefused) {
  for (std::uint32_t code = 54; code <= 62; ++code) {
    EXPECT_FALSE(port.registerHotKey(code, 0)) << code;
  }
  EXPECT_FALSE(port.registerHotKey(kVirtualNumLock, kControlAlt));
}

TEST_F(HotKeyRefusal, TheCopyKeystrokeIsRefusedButItsKeyIsNot) {
  EXPECT_FALSE(port.registerHotKey(kVirtualInsert, kHotKeyControl));
  EXPECT_TRUE(port.registerHotKey(kVirtualInsert, kControlAlt));
  EXPECT_TRUE(port.registerHotKey(kVirtualC, kHotKeyControl));
}

TEST_F(HotKeyRefusal, AModifierThatNoKeyCarriesIsRefused) {
  useLayout("no-super.xkb");
  EXPECT_FALSE(port.registerHotKey(kVirtualD, kHotKeyCommand));
  EXPECT_TRUE(port.registerHotKey(kVirtualD, kControlAlt));
  useLayout("super-on-mod3.xkb");
  port.settle();
  EXPECT_FALSE(port.registerHotKey(kVirtualD, kHotKeyShift));
  EXPECT_TRUE(port.registerHotKey(kVirtualD, kHotKeyCommand));
}

TEST_F(HotKeyRefusal, ACombinationThatAnotherProgramHoldsIsRefused) {
  ForeignGrabs other(server.display());
  ASSERT_TRUE(other.take(kKeyD, kStateControl | kStateAlt));
  EXPECT_FALSE(port.registerHotKey(kVirtualD, kControlAlt));
  EXPECT_TRUE(port.registerHotKey(kVirtualD, kHotKeyControl));
}

TEST_F(HotKeyRefusal, ACombinationHeldInOneStateOfTheLocksIsRefusedAndNothingOfItKept) {
  ForeignGrabs other(server.display());
  ASSERT_TRUE(other.take(kKeyD, kStateControl | kStateAlt | kStateNumLock));
  EXPECT_FALSE(port.registerHotKey(kVirtualD, kControlAlt));
  port.settle();
  for (const unsigned locks : {0U, kStateLock, kStateLock | kStateNumLock}) {
    EXPECT_TRUE(other.take(kKeyD, kStateControl | kStateAlt | locks));
  }
}

TEST_F(HotKeyRefusal, ARefusedCombinationIsFreeForOthersAtOnce) {
  ForeignGrabs holder(server.display());
  ForeignGrabs third(server.display());
  ASSERT_TRUE(holder.take(kKeyD, kStateControl | kStateAlt | kStateNumLock));
  port.call([&] {
    EXPECT_FALSE(port.hotKeys().registerHotKey(kVirtualD, kControlAlt, {}));
    // The main loop, which would send it, has not run since.
    for (const unsigned locks : {0U, kStateLock, kStateLock | kStateNumLock}) {
      EXPECT_TRUE(third.take(kKeyD, kStateControl | kStateAlt | locks)) << locks;
    }
  });
}

TEST_F(HotKeyRefusal, WhatNobodyCanHaveIsToldApartFromWhatIsHeld) {
  const auto can = [this](std::uint32_t keyCode, std::uint32_t modifiers) {
    return port.call([=, this] { return port.hotKeys().canBeHotKey(keyCode, modifiers); });
  };
  ASSERT_TRUE(port.registerHotKey(kVirtualD, kControlAlt));
  EXPECT_TRUE(can(kVirtualD, kControlAlt)) << "though it is held";
  EXPECT_FALSE(can(kVirtualInsert, kHotKeyControl)) << "the copy keystroke";
  EXPECT_TRUE(can(kVirtualInsert, kControlAlt));
  EXPECT_FALSE(can(59, kHotKeyControl)) << "a modifier key";
  EXPECT_FALSE(can(52, kHotKeyControl)) << "no key";
}

}  // namespace
}  // namespace seldial::platform::x11
