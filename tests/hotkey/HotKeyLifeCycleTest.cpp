// Ownership and destruction of records.
#include "tests/hotkey/HotKeyTest.h"

namespace seldial {
namespace {

using HotKeyLifeCycle = HotKeyTest;

TEST_F(HotKeyLifeCycle, TheRegistryOwnsItsRecords) {
  int calls = 0;
  std::weak_ptr<QKHotKey> watched =
      center->registerHotKeyWithKeyCode(kKeyV, kCommand, counting(calls));
  EXPECT_FALSE(watched.expired());
  port->release(1);
  EXPECT_EQ(calls, 1);
  center->unregisterAllHotKeys();
  EXPECT_TRUE(watched.expired());
}

TEST_F(HotKeyLifeCycle, AnUnregisteredRecordLivesAsLongAsItsOwner) {
  auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  const std::weak_ptr<QKHotKey> watched = hotKey;
  center->unregisterHotKey(hotKey);
  EXPECT_FALSE(watched.expired());
  hotKey.reset();
  EXPECT_TRUE(watched.expired());
}

TEST_F(HotKeyLifeCycle, ADestroyedRecordRemovesItsEqualFromTheRegistry) {
  int calls = 0;
  const std::weak_ptr<QKHotKey> member =
      center->registerHotKeyWithKeyCode(kKeyV, kCommand, counting(calls));
  QKHotKey::hotKeyWithKeyCode(kKeyV, kCommand, nullptr).reset();
  EXPECT_TRUE(member.expired());
  EXPECT_FALSE(center->hasRegisteredHotKeyWithKeyCode(kKeyV, kCommand));
  EXPECT_TRUE(port->registrations.empty());
  EXPECT_EQ(port->unregistered.size(), 1U);
  port->release(1);
  EXPECT_EQ(calls, 0);
}

TEST_F(HotKeyLifeCycle, DestroyingARefusedRecordDoesNotAffectOthers) {
  const auto kept = center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  port->refuse = true;
  center->registerHotKeyWithKeyCode(kKeyB, kCommand, nullptr);
  EXPECT_TRUE(center->hasRegisteredHotKeyWithKeyCode(kKeyV, kCommand));
  EXPECT_TRUE(port->unregistered.empty());
}

TEST_F(HotKeyLifeCycle, ATaskThatOwnsAnotherRecordTakesItAlong) {
  auto inner = center->registerHotKeyWithKeyCode(kKeyB, kCommand, nullptr);
  center->registerHotKeyWithKeyCode(kKeyV, kCommand,
                                    [inner = std::move(inner)](const QKKeyEvent& /*event*/) {});
  center->unregisterHotKeyWithKeyCode(kKeyB, kCommand);
  center->unregisterHotKeyWithKeyCode(kKeyV, kCommand);
  EXPECT_TRUE(center->registeredHotKeys().empty());
  EXPECT_TRUE(port->registrations.empty());
}

TEST_F(HotKeyLifeCycle, ARecordMayOutliveThePort) {
  auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  QKHotKeyCenter::setHotKeyEvents(nullptr);
  center->unregisterHotKey(hotKey);
  hotKey.reset();
  QKHotKeyCenter::setHotKeyEvents(port);
  EXPECT_TRUE(port->unregistered.empty());
}

TEST_F(HotKeyLifeCycle, InitSetsUpAfreshWithoutUnregistering) {
  const auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  center->init();
  EXPECT_TRUE(center->registeredHotKeys().empty());
  EXPECT_TRUE(port->unregistered.empty());
  EXPECT_NE(hotKey->hotKeyRef, std::nullopt);
  EXPECT_EQ(center->registerHotKeyWithKeyCode(kKeyB, kCommand, nullptr)->hotKeyID, 1U);
}

TEST_F(HotKeyLifeCycle, InitDestroysRecordsWithoutAnotherOwner) {
  const std::weak_ptr<QKHotKey> watched =
      center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  center->init();
  EXPECT_TRUE(watched.expired());
  EXPECT_TRUE(port->registrations.empty());
}

TEST_F(HotKeyLifeCycle, TenThousandRegistrationsLeaveNothingBehind) {
  for (int round = 0; round < 10'000; ++round) {
    const auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
    ASSERT_NE(hotKey, nullptr);
    center->unregisterHotKey(hotKey);
  }
  EXPECT_TRUE(port->registrations.empty());
  EXPECT_EQ(port->unregistered.size(), 10'000U);
}

/// A record that only a static object owns is destroyed after main() has returned.
TEST(HotKeyAtExitDeathTest, ARecordMayBeDestroyedWhileTheProcessEnds) {
  const auto endWithRecords = [] {
    QKHotKeyCenter::setHotKeyEvents(std::make_shared<tests::FakeHotKeyEvents>());
    static std::shared_ptr<QKHotKey> early;
    static const auto center = QKHotKeyCenter::sharedHotKeyCenter();
    static std::shared_ptr<QKHotKey> late;
    early = center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
    late = QKHotKey::hotKeyWithKeyCode(kKeyV, kCommand, nullptr);
    std::exit(0);
  };
  EXPECT_EXIT(endWithRecords(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace seldial
