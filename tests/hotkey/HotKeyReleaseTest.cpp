// Using a hot key.
#include "tests/hotkey/HotKeyTest.h"

namespace seldial {
namespace {

using HotKeyRelease = HotKeyTest;

platform::HotKeyReleased releasedWithId(std::uint32_t id) {
  platform::HotKeyReleased released;
  released.hotKeyID.id = id;
  return released;
}

TEST_F(HotKeyRelease, InvokesTheRecordWithThatIdAlone) {
  int first = 0;
  int second = 0;
  center->registerHotKeyWithKeyCode(kKeyV, kCommand, counting(first));
  const auto hotKey = center->registerHotKeyWithKeyCode(kKeyB, kCommand, counting(second));
  port->release(hotKey->hotKeyID);
  EXPECT_EQ(first, 0);
  EXPECT_EQ(second, 1);
}

TEST_F(HotKeyRelease, CreatesAKeyUpEventOutsideAnyWindow) {
  std::vector<QKKeyEvent> events;
  const auto hotKey = center->registerHotKeyWithKeyCode(
      kKeyV, kCommand, [&](const QKKeyEvent& event) { events.push_back(event); });
  auto released = releasedWithId(hotKey->hotKeyID);
  released.event.locationX = 12.5;
  released.event.locationY = 34;
  released.event.modifierFlags = kControl;
  released.event.timestamp = 56.25;
  port->released(released);

  ASSERT_EQ(events.size(), 1U);
  const QKKeyEvent& event = events[0];
  EXPECT_EQ(event.type, 11U);
  EXPECT_EQ(event.locationX, 12.5);
  EXPECT_EQ(event.locationY, 34);
  EXPECT_EQ(event.modifierFlags, kControl);
  EXPECT_EQ(event.timestamp, 56.25);
  EXPECT_EQ(event.windowNumber, -1);
  EXPECT_EQ(event.characters, "");
  EXPECT_EQ(event.charactersIgnoringModifiers, "");
  EXPECT_FALSE(event.isARepeat);
  EXPECT_EQ(event.keyCode, kKeyV);
}

TEST_F(HotKeyRelease, AnIdThatMatchesNoRecordIsIgnored) {
  int calls = 0;
  center->registerHotKeyWithKeyCode(kKeyV, kCommand, counting(calls));
  port->release(0);
  port->release(99);
  EXPECT_EQ(calls, 0);
}

TEST_F(HotKeyRelease, TheSignatureIsNotLookedAt) {
  int calls = 0;
  const auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, kCommand, counting(calls));
  auto released = releasedWithId(hotKey->hotKeyID);
  released.hotKeyID.signature = 1;
  port->released(released);
  EXPECT_EQ(calls, 1);
}

TEST_F(HotKeyRelease, AnIdThatMatchesTwoIsLoggedAndOneOfThemInvoked) {
  int calls = 0;
  const auto one = center->registerHotKeyWithKeyCode(kKeyV, kCommand, counting(calls));
  const auto two = center->registerHotKeyWithKeyCode(kKeyB, kCommand, counting(calls));
  two->hotKeyID = one->hotKeyID;
  testing::internal::CaptureStderr();
  port->release(one->hotKeyID);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "ERROR!\n");
  EXPECT_EQ(calls, 1);
}

TEST_F(HotKeyRelease, OneMatchIsNotLogged) {
  const auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  testing::internal::CaptureStderr();
  port->release(hotKey->hotKeyID);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(HotKeyRelease, PerformsTheActionOfATargetRecord) {
  RecordingTarget target("dial:");
  const auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, kCommand, &target, "dial:", nullptr);
  port->release(hotKey->hotKeyID);
  EXPECT_EQ(target.actions, std::vector<QKAction>{"dial:"});
  EXPECT_EQ(target.events.at(0).keyCode, kKeyV);
}

TEST_F(HotKeyRelease, ATaskMayUnregisterItsOwnHotKeyAndContinue) {
  auto owned = std::make_shared<std::string>("still here");
  const std::weak_ptr<std::string> watched = owned;
  std::string seen;
  center->registerHotKeyWithKeyCode(
      kKeyV, kCommand, [this, &seen, owned = std::move(owned)](const QKKeyEvent& /*event*/) {
        center->unregisterAllHotKeys();
        seen = *owned;
      });
  port->release(1);
  EXPECT_EQ(seen, "still here");
  EXPECT_TRUE(watched.expired());
  EXPECT_TRUE(port->registrations.empty());
}

TEST_F(HotKeyRelease, AnActionMayUnregisterItsOwnHotKeyAndContinue) {
  class Unregistering final : public QKHotKeyTarget {
   public:
    [[nodiscard]] bool respondsTo(const QKAction& /*action*/) const override { return true; }
    void perform(const QKAction& action, const QKKeyEvent& event, const QKObject& object) override {
      QKHotKeyCenter::sharedHotKeyCenter()->unregisterHotKeysWithTarget(this, action);
      seen =
          action + *std::static_pointer_cast<std::string>(object) + std::to_string(event.keyCode);
    }
    std::string seen;
  } target;
  center->registerHotKeyWithKeyCode(kKeyV, kCommand, &target, "an action of some length: ",
                                    std::make_shared<std::string>("still here "));
  port->release(1);
  EXPECT_EQ(target.seen, "an action of some length: still here 9");
  EXPECT_TRUE(port->registrations.empty());
}

TEST_F(HotKeyRelease, ATaskMayTakeItsOwnCombinationAnew) {
  int calls = 0;
  center->registerHotKeyWithKeyCode(kKeyV, kCommand, [&](const QKKeyEvent& /*event*/) {
    center->unregisterHotKeyWithKeyCode(kKeyV, kCommand);
    EXPECT_NE(center->registerHotKeyWithKeyCode(kKeyV, kCommand, counting(calls)), nullptr);
  });
  port->release(1);
  EXPECT_TRUE(center->hasRegisteredHotKeyWithKeyCode(kKeyV, kCommand));
  port->release(2);
  EXPECT_EQ(calls, 1);
}

TEST_F(HotKeyRelease, ATaskMayReplaceItsHotKeyByAnother) {
  int calls = 0;
  std::shared_ptr<QKHotKey> current;
  current = center->registerHotKeyWithKeyCode(kKeyV, kCommand, [&](const QKKeyEvent& /*event*/) {
    center->unregisterHotKey(current);
    current = center->registerHotKeyWithKeyCode(kKeyB, kCommand, counting(calls));
  });
  port->release(1);
  ASSERT_NE(current, nullptr);
  port->release(current->hotKeyID);
  EXPECT_EQ(calls, 1);
}

}  // namespace
}  // namespace seldial
