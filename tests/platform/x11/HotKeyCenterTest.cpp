#include "tests/platform/x11/HotKeyCenterTest.h"

#include "tests/platform/x11/ForeignGrabs.h"

namespace seldial::platform::x11 {
namespace {

using HotKeyCenterOnX11 = HotKeyCenterTest;

constexpr unsigned kStateControlAlt = kStateControl | kStateAlt;

/// Virtual key codes in addition to those of X11Test.h, and their keys.

TEST_F(HotKeyCenterOnX11, ACombinationThatAnotherProgramHoldsIsRefusedAndUsesUpNoId) {
  ForeignGrabs other(server.display());
  ASSERT_TRUE(other.grab(kKeyD, kStateControlAlt));
  onMain([&] {
    EXPECT_EQ(add(kVK_ANSI_D), nullptr);
    EXPECT_FALSE(center->hasRegisteredHotKeyWithKeyCode(kVK_ANSI_D, kControlOption));
    EXPECT_EQ(add(kVK_ANSI_F)->hotKeyID, 1U);
  });
  other.ungrab(kKeyD, kStateControlAlt);
  onMain([&] { EXPECT_EQ(add(kVK_ANSI_D)->hotKeyID, 2U); });
  EXPECT_EQ(useKey(kKeyD).size(), 1U);
}

TEST_F(HotKeyCenterOnX11, AUseReachesTheTaskWithAKeyUpEvent) {
  onMain([&] { add(kVK_ANSI_D); });
  keyboard.movePointer(123, 45);
  const auto events = useKey(kKeyD);
  ASSERT_EQ(events.size(), 1U);
  EXPECT_EQ(events[0].type, QKKeyEvent::kKeyUp);
  EXPECT_EQ(events[0].keyCode, kVK_ANSI_D);
  EXPECT_EQ(events[0].modifierFlags, kControlOption);
  EXPECT_EQ(events[0].locationX, 123);
  EXPECT_EQ(events[0].locationY, 45);
  EXPECT_GT(events[0].timestamp, 0);
  EXPECT_EQ(events[0].windowNumber, -1);
}

TEST_F(HotKeyCenterOnX11, IdsCountUpAreNeverReusedAndEachUseReachesTheRecordOfToday) {
  for (std::uint32_t id = 1; id <= 5; ++id) {
    onMain([&] {
      kept = {add(kVK_ANSI_D)};
      ASSERT_NE(kept[0], nullptr);
      EXPECT_EQ(kept[0]->hotKeyID, id);
    });
    EXPECT_EQ(useKey(kKeyD).size(), id);
    onMain([&] {
      center->unregisterHotKey(kept[0]);
      kept.clear();
    });
  }
  EXPECT_EQ(useKey(kKeyD).size(), 5U);
}

TEST_F(HotKeyCenterOnX11, TwoRecordsOfOneIdAreLoggedOnceAndOneOfThemInvoked) {
  onMain([&] { add(kVK_ANSI_D)->hotKeyID = add(kVK_ANSI_F)->hotKeyID; });
  ::testing::internal::CaptureStderr();
  const auto events = useKey(kKeyF);
  EXPECT_EQ(::testing::internal::GetCapturedStderr(), "ERROR!\n");
  EXPECT_EQ(events.size(), 1U);
}

TEST_F(HotKeyCenterOnX11, AMemberRemovedForItsEqualReleasesItsCombination) {
  ForeignGrabs other(server.display());
  onMain([&] { add(kVK_ANSI_D); });
  EXPECT_FALSE(other.isFree(kKeyD, kStateControlAlt));
  onMain([&] { QKHotKey::hotKeyWithKeyCode(kVK_ANSI_D, kControlOption, nullptr).reset(); });
  EXPECT_TRUE(other.isFree(kKeyD, kStateControlAlt));
  EXPECT_EQ(useKey(kKeyD).size(), 0U);
}

TEST_F(HotKeyCenterOnX11, AMemberWithAnotherOwnerIsRemovedAtOnceAndReleasesItsCombinationLater) {
  ForeignGrabs other(server.display());
  onMain([&] {
    kept = {add(kVK_ANSI_D)};
    center->unregisterHotKey(QKHotKey::hotKeyWithKeyCode(kVK_ANSI_D, kControlOption, nullptr));
  });
  EXPECT_EQ(useKey(kKeyD).size(), 0U);
  EXPECT_FALSE(other.isFree(kKeyD, kStateControlAlt));
  onMain([&] { kept.clear(); });
  EXPECT_TRUE(other.isFree(kKeyD, kStateControlAlt));
}

TEST_F(HotKeyCenterOnX11, ATaskMayTakeItsOwnCombinationAnew) {
  onMain([&] {
    center->registerHotKeyWithKeyCode(kVK_ANSI_D, kControlOption, [this](const QKKeyEvent& event) {
      uses.push_back(event);
      center->unregisterAllHotKeys();
      EXPECT_NE(add(kVK_ANSI_D), nullptr);
    });
  });
  EXPECT_EQ(useKey(kKeyD).size(), 1U);
  EXPECT_EQ(useKey(kKeyD).size(), 2U);
}

/// Each way to unregister, on Ctrl+Alt with A, D, F (of a target) and Q (the same, but of another
/// action).
class UnregisterOnX11 : public HotKeyCenterTest {
 protected:
  class Target final : public QKHotKeyTarget {
    [[nodiscard]] bool respondsTo(const QKAction& /*action*/) const override { return true; }
    void perform(const QKAction& /*action*/, const QKKeyEvent& /*event*/,
                 const QKObject& /*object*/) override {}
  };

  UnregisterOnX11() {
    onMain([this] {
      add(kVK_ANSI_A);
      add(kVK_ANSI_D);
      center->registerHotKeyWithKeyCode(kVK_ANSI_F, kControlOption, &target, "dial:", nullptr);
      center->registerHotKeyWithKeyCode(kVK_ANSI_Q, kControlOption, &target, "hang:", nullptr);
    });
  }

  /// The keys, among A, D, F and Q, whose combination we still hold on the server.
  std::string held() {
    std::string keys;
    for (const auto& [key, name] :
         {std::pair{kKeyA, 'A'}, {kKeyD, 'D'}, {kKeyF, 'F'}, {kKeyQ, 'Q'}}) {
      if (!other.isFree(key, kStateControlAlt)) keys += name;
    }
    return keys;
  }

  Target target;
  ForeignGrabs other{server.display()};
};

TEST_F(UnregisterOnX11, ByTarget) {
  onMain([&] { center->unregisterHotKeysWithTarget(&target); });
  EXPECT_EQ(held(), "AD");
}

TEST_F(UnregisterOnX11, ByTargetAndAction) {
  onMain([&] { center->unregisterHotKeysWithTarget(&target, "dial:"); });
  EXPECT_EQ(held(), "ADQ");
}

TEST_F(UnregisterOnX11, ByKeyCodeAndFlags) {
  onMain([&] { center->unregisterHotKeyWithKeyCode(kVK_ANSI_D, kModifierFlagControl); });
  EXPECT_EQ(held(), "ADFQ");
  onMain([&] { center->unregisterHotKeyWithKeyCode(kVK_ANSI_D, kControlOption); });
  EXPECT_EQ(held(), "AFQ");
}

TEST_F(UnregisterOnX11, ByATest) {
  onMain([&] {
    center->unregisterHotKeysMatching([](const QKHotKey& hotKey) { return hotKey.keyCode() < 3; });
  });
  EXPECT_EQ(held(), "FQ");
}

TEST_F(UnregisterOnX11, All) {
  EXPECT_EQ(held(), "ADFQ");
  onMain([&] { center->unregisterAllHotKeys(); });
  EXPECT_EQ(held(), "");
}

}  // namespace
}  // namespace seldial::platform::x11
