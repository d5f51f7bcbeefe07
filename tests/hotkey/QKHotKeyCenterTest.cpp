#include <thread>

#include "hotkey/QKHotKeyCenter.h"
#include "tests/hotkey/HotKeyTest.h"

namespace seldial {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

using QKHotKeyCenterTest = HotKeyTest;

TEST_F(QKHotKeyCenterTest, CommandVTwiceYieldsARecordTheFirstTimeAndNoneTheSecond) {
  int first = 0;
  int second = 0;
  const auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, kCommand, counting(first));
  ASSERT_NE(hotKey, nullptr);
  EXPECT_EQ(center->registerHotKeyWithKeyCode(kKeyV, kCommand, counting(second)), nullptr);
  port->release(hotKey->hotKeyID);
  EXPECT_EQ(first, 1);
  EXPECT_EQ(second, 0);
  EXPECT_EQ(port->requests, 1);
}

TEST_F(QKHotKeyCenterTest, AfterAFailureTheNextOneReceivesTheIdThatItWouldHaveHad) {
  const auto first = center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  EXPECT_EQ(first->hotKeyID, 1U);
  port->refuse = true;
  EXPECT_EQ(center->registerHotKeyWithKeyCode(kKeyB, kCommand, nullptr), nullptr);
  port->refuse = false;
  const auto next = center->registerHotKeyWithKeyCode(kKeyB, kControl, nullptr);
  ASSERT_NE(next, nullptr);
  EXPECT_EQ(next->hotKeyID, 2U);
}

TEST_F(QKHotKeyCenterTest, IdsCountUpAndAreNotReusedAfterUnregistering) {
  for (std::uint32_t id = 1; id <= 5; ++id) {
    const auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
    ASSERT_NE(hotKey, nullptr);
    EXPECT_EQ(hotKey->hotKeyID, id);
    EXPECT_EQ(port->registrations.at(0).hotKeyID.id, id);
    center->unregisterHotKey(hotKey);
    EXPECT_EQ(hotKey->hotKeyID, id);
  }
}

TEST_F(QKHotKeyCenterTest, RegisteredHotKeysOmitsRecordsWhoseReferenceHasBeenCleared) {
  const auto kept = center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  const auto cleared = center->registerHotKeyWithKeyCode(kKeyB, kCommand, nullptr);
  EXPECT_THAT(center->registeredHotKeys(), UnorderedElementsAre(kept, cleared));
  cleared->hotKeyRef.reset();
  EXPECT_THAT(center->registeredHotKeys(), ElementsAre(kept));
  EXPECT_TRUE(center->hasRegisteredHotKeyWithKeyCode(kKeyB, kCommand));
}

TEST_F(QKHotKeyCenterTest, ATargetThatDoesNotImplementItsActionDoesNothingOnRelease) {
  RecordingTarget target("dial:");
  const auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, kCommand, &target, "hang:", nullptr);
  ASSERT_NE(hotKey, nullptr);
  port->release(hotKey->hotKeyID);
  EXPECT_THAT(target.actions, IsEmpty());
}

TEST_F(QKHotKeyCenterTest, IsOneForTheProcess) {
  EXPECT_EQ(QKHotKeyCenter::sharedHotKeyCenter(), center);
  std::shared_ptr<QKHotKeyCenter> elsewhere;
  std::thread([&] { elsewhere = QKHotKeyCenter::sharedHotKeyCenter(); }).join();
  EXPECT_EQ(elsewhere, center);
}

TEST_F(QKHotKeyCenterTest, IsNullWithoutAPort) {
  QKHotKeyCenter::setHotKeyEvents(nullptr);
  EXPECT_EQ(QKHotKeyCenter::sharedHotKeyCenter(), nullptr);
  EXPECT_EQ(center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr), nullptr);
  QKHotKeyCenter::setHotKeyEvents(port);
  EXPECT_EQ(QKHotKeyCenter::sharedHotKeyCenter(), center);
}

TEST_F(QKHotKeyCenterTest, TheCombinationIsRegisteredWithItsIdentifier) {
  center->registerHotKeyWithKeyCode(kKeyV, kCommand | kControl | platform::kModifierFlagCapsLock,
                                    nullptr);
  ASSERT_EQ(port->registrations.size(), 1U);
  const auto& registration = port->registrations[0];
  EXPECT_EQ(registration.keyCode, kKeyV);
  EXPECT_EQ(registration.modifiers, 0x100U | 0x1000U | 0x400U);
  EXPECT_EQ(registration.hotKeyID.signature, 0x68746B31U);
  EXPECT_EQ(registration.hotKeyID.id, 1U);
}

TEST_F(QKHotKeyCenterTest, ARefusedRecordIsUnchangedAndNotAdded) {
  const auto hotKey = QKHotKey::hotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  port->refuse = true;
  EXPECT_EQ(center->registerHotKey(hotKey), nullptr);
  EXPECT_EQ(hotKey->hotKeyRef, std::nullopt);
  EXPECT_EQ(hotKey->hotKeyID, 0U);
  EXPECT_FALSE(center->hasRegisteredHotKeyWithKeyCode(kKeyV, kCommand));
}

TEST_F(QKHotKeyCenterTest, ARecordWhoseEqualIsRegisteredIsReturnedAndNotAdded) {
  const auto member = center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  const auto equal = QKHotKey::hotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  EXPECT_EQ(center->registerHotKey(equal), equal);
  EXPECT_EQ(equal->hotKeyRef, std::nullopt);
  EXPECT_EQ(equal->hotKeyID, 0U);
  EXPECT_EQ(port->requests, 1);
  EXPECT_THAT(center->registeredHotKeys(), ElementsAre(member));
}

TEST_F(QKHotKeyCenterTest, TheSameRecordCanBeRegisteredAgainUnderANewId) {
  const auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  EXPECT_EQ(center->registerHotKey(hotKey), hotKey);
  EXPECT_EQ(hotKey->hotKeyID, 1U);
  center->unregisterHotKey(hotKey);
  EXPECT_EQ(center->registerHotKey(hotKey), hotKey);
  EXPECT_EQ(hotKey->hotKeyID, 2U);
}

TEST_F(QKHotKeyCenterTest, TheTargetVariantYieldsNoneForATakenCombinationToo) {
  RecordingTarget target("dial:");
  EXPECT_NE(center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr), nullptr);
  EXPECT_EQ(center->registerHotKeyWithKeyCode(kKeyV, kCommand, &target, "dial:", nullptr), nullptr);
}

TEST_F(QKHotKeyCenterTest, UnregisteringReleasesTheCombination) {
  int calls = 0;
  const auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, kCommand, counting(calls));
  const auto ref = *hotKey->hotKeyRef;
  center->unregisterHotKey(hotKey);
  EXPECT_THAT(port->unregistered, ElementsAre(ref));
  EXPECT_EQ(hotKey->hotKeyRef, std::nullopt);
  EXPECT_FALSE(center->hasRegisteredHotKeyWithKeyCode(kKeyV, kCommand));
  port->release(hotKey->hotKeyID);
  EXPECT_EQ(calls, 0);
  center->unregisterHotKey(hotKey);
  EXPECT_EQ(port->unregistered.size(), 1U);
}

TEST_F(QKHotKeyCenterTest, UnregisteringAnEqualRecordRemovesTheMember) {
  auto member = center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  const auto equal = QKHotKey::hotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  center->unregisterHotKey(equal);
  EXPECT_FALSE(center->hasRegisteredHotKeyWithKeyCode(kKeyV, kCommand));
  EXPECT_NE(member->hotKeyRef, std::nullopt);
  EXPECT_THAT(port->unregistered, IsEmpty());
  member.reset();
  EXPECT_EQ(port->unregistered.size(), 1U);
}

class UnregisterVariants : public HotKeyTest {
 protected:
  UnregisterVariants() {
    center->registerHotKeyWithKeyCode(1, kCommand, &one, "dial:", nullptr);
    center->registerHotKeyWithKeyCode(2, kCommand, &one, "hang:", nullptr);
    center->registerHotKeyWithKeyCode(3, kCommand, &two, "dial:", nullptr);
    center->registerHotKeyWithKeyCode(4, kCommand, nullptr);
  }

  [[nodiscard]] std::vector<int> keyCodes() const {
    std::vector<int> codes;
    for (const auto& hotKey : center->registeredHotKeys()) codes.push_back(hotKey->keyCode());
    EXPECT_EQ(codes.size(), port->registrations.size());
    return codes;
  }

  RecordingTarget one{"dial:"};
  RecordingTarget two{"dial:"};
};

TEST_F(UnregisterVariants, ByTarget) {
  center->unregisterHotKeysWithTarget(&one);
  EXPECT_THAT(keyCodes(), UnorderedElementsAre(3, 4));
}

TEST_F(UnregisterVariants, ByTargetAndAction) {
  center->unregisterHotKeysWithTarget(&one, "dial:");
  EXPECT_THAT(keyCodes(), UnorderedElementsAre(2, 3, 4));
}

TEST_F(UnregisterVariants, ByNoTargetThoseWithoutOne) {
  center->unregisterHotKeysWithTarget(nullptr);
  EXPECT_THAT(keyCodes(), UnorderedElementsAre(1, 2, 3));
}

TEST_F(UnregisterVariants, ByKeyCodeAndFlags) {
  center->unregisterHotKeyWithKeyCode(3, kControl);
  EXPECT_THAT(keyCodes(), UnorderedElementsAre(1, 2, 3, 4));
  center->unregisterHotKeyWithKeyCode(3, kCommand);
  EXPECT_THAT(keyCodes(), UnorderedElementsAre(1, 2, 4));
}

TEST_F(UnregisterVariants, ByATest) {
  center->unregisterHotKeysMatching(
      [](const QKHotKey& hotKey) { return hotKey.keyCode() % 2 == 0; });
  EXPECT_THAT(keyCodes(), UnorderedElementsAre(1, 3));
}

TEST_F(UnregisterVariants, All) {
  center->unregisterAllHotKeys();
  EXPECT_THAT(keyCodes(), IsEmpty());
  EXPECT_EQ(port->unregistered.size(), 4U);
}

TEST_F(UnregisterVariants, MatchingGivesTheMembersThatPass) {
  const auto matching =
      center->hotKeysMatching([this](const QKHotKey& hotKey) { return hotKey.target() == &one; });
  EXPECT_EQ(matching.size(), 2U);
  EXPECT_THAT(keyCodes(), UnorderedElementsAre(1, 2, 3, 4));
}

}  // namespace
}  // namespace seldial
