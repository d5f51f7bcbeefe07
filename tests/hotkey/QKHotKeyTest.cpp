#include "hotkey/QKHotKey.h"
#include "hotkey/QKKeyStrings.h"
#include "tests/hotkey/HotKeyTest.h"

namespace seldial {
namespace {

using testing::HasSubstr;
using testing::MatchesRegex;

constexpr std::uint64_t kShift = platform::kModifierFlagShift;
constexpr std::uint64_t kOption = platform::kModifierFlagOption;
constexpr std::uint64_t kCapsLock = platform::kModifierFlagCapsLock;

class QKHotKeyRecord : public HotKeyTest {
 protected:
  static std::string flagsOf(std::uint64_t flags) {
    const std::string text = QKHotKey::hotKeyWithKeyCode(0, flags, nullptr)->description();
    const auto begin = text.find("flags: ") + 7;
    return text.substr(begin, text.find('\n', begin) - begin);
  }
};

TEST_F(QKHotKeyRecord, IsUnregisteredWhenItIsCreated) {
  const auto hotKey = QKHotKey::hotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  EXPECT_EQ(hotKey->keyCode(), kKeyV);
  EXPECT_EQ(hotKey->modifierFlags(), kCommand);
  EXPECT_EQ(hotKey->hotKeyRef, std::nullopt);
  EXPECT_EQ(hotKey->hotKeyID, 0U);
  EXPECT_EQ(hotKey->target(), nullptr);
  EXPECT_EQ(hotKey->action(), "");
  EXPECT_EQ(hotKey->object(), nullptr);
  EXPECT_FALSE(hotKey->task());
  EXPECT_EQ(port->requests, 0);
}

TEST_F(QKHotKeyRecord, EqualsAnotherOfTheSameKeyCodeAndFlagsWhateverTheyInvoke) {
  int calls = 0;
  const auto one = QKHotKey::hotKeyWithKeyCode(kKeyV, kCommand, counting(calls));
  const auto same = QKHotKey::hotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  const auto otherKey = QKHotKey::hotKeyWithKeyCode(kKeyB, kCommand, nullptr);
  const auto otherFlags = QKHotKey::hotKeyWithKeyCode(kKeyV, kControl, nullptr);
  EXPECT_TRUE(one->isEqual(*same));
  EXPECT_TRUE(one->isEqual(*one));
  EXPECT_FALSE(one->isEqual(*otherKey));
  EXPECT_FALSE(one->isEqual(*otherFlags));
  const QKHotKeySet set{one, same, otherKey, otherFlags};
  EXPECT_EQ(set.size(), 3U);
}

TEST_F(QKHotKeyRecord, HashesToFlagsXorKeyCode) {
  EXPECT_EQ(QKHotKey::hotKeyWithKeyCode(kKeyV, kCommand, nullptr)->hash(), 0x100009U);
  EXPECT_EQ(QKHotKey::hotKeyWithKeyCode(0xFFFF, 0x10001, nullptr)->hash(), 0x1FFFEU);
}

TEST_F(QKHotKeyRecord, FlagsAreDescribedInAFixedOrder) {
  EXPECT_EQ(flagsOf(kControl | kOption | kCommand),
            "(NSControlKeyMask | NSCommandKeyMask | NSAlternateKeyMask)");
  EXPECT_EQ(flagsOf(kShift | kOption | kCommand | kControl),
            "(NSControlKeyMask | NSCommandKeyMask | NSShiftKeyMask | NSAlternateKeyMask)");
  EXPECT_EQ(flagsOf(kShift), "(NSShiftKeyMask)");
}

TEST_F(QKHotKeyRecord, CapsLockAndUnknownFlagsAreNotNamed) {
  EXPECT_EQ(flagsOf(kCapsLock | 0x800000), "()");
  EXPECT_EQ(flagsOf(kCapsLock | kCommand), "(NSCommandKeyMask)");
}

TEST_F(QKHotKeyRecord, DescribesKeyFlagsAndBlock) {
  const auto hotKey = QKHotKey::hotKeyWithKeyCode(kKeyV, kCommand, nullptr);
  EXPECT_THAT(hotKey->description(),
              MatchesRegex("<QKHotKey: 0x[0-9a-f]+>\n\t\\(key: 9\n\tflags: \\(NSCommandKeyMask\\)"
                           "\n\tinvokes: \\(block\\)\\)"));
}

TEST_F(QKHotKeyRecord, DescribesTargetAndActionWhenBothAreSet) {
  RecordingTarget target("dial:");
  const auto both = center->registerHotKeyWithKeyCode(kKeyV, kCommand, &target, "dial:", nullptr);
  EXPECT_THAT(both->description(), HasSubstr("\n\tinvokes: [<Dialer> dial:])"));
  const auto noAction = center->registerHotKeyWithKeyCode(kKeyB, kCommand, &target, "", nullptr);
  EXPECT_THAT(noAction->description(), HasSubstr("invokes: (block))"));
  const auto noTarget = center->registerHotKeyWithKeyCode(0, 0, nullptr, "dial:", nullptr);
  EXPECT_THAT(noTarget->description(), HasSubstr("invokes: (block))"));
}

TEST_F(QKHotKeyRecord, ATargetIsDescribedByItsAddressByDefault) {
  class PlainTarget final : public QKHotKeyTarget {
    [[nodiscard]] bool respondsTo(const QKAction& /*action*/) const override { return false; }
    void perform(const QKAction& /*action*/, const QKKeyEvent& /*event*/,
                 const QKObject& /*object*/) override {}
  };
  EXPECT_THAT(PlainTarget().description(), MatchesRegex("<QKHotKeyTarget: 0x[0-9a-f]+>"));
}

TEST_F(QKHotKeyRecord, InvokesTheActionWithEventAndObject) {
  RecordingTarget target("dial:");
  const QKObject object = std::make_shared<int>(7);
  const auto hotKey = center->registerHotKeyWithKeyCode(kKeyV, kCommand, &target, "dial:", object);
  QKKeyEvent event;
  event.keyCode = kKeyV;
  hotKey->invokeWithEvent(event);
  ASSERT_EQ(target.actions, std::vector<QKAction>{"dial:"});
  EXPECT_EQ(target.events[0].keyCode, kKeyV);
  EXPECT_EQ(target.objects[0], object);
}

TEST_F(QKHotKeyRecord, OwnsItsObject) {
  RecordingTarget target("dial:");
  auto object = std::make_shared<int>(7);
  const std::weak_ptr<int> watched = object;
  auto hotKey =
      center->registerHotKeyWithKeyCode(kKeyV, kCommand, &target, "dial:", std::move(object));
  EXPECT_FALSE(watched.expired());
  center->unregisterHotKey(hotKey);
  hotKey.reset();
  EXPECT_TRUE(watched.expired());
}

TEST_F(QKHotKeyRecord, WithoutTaskOrTargetItDoesNothing) {
  QKHotKey::hotKeyWithKeyCode(kKeyV, kCommand, nullptr)->invokeWithEvent({});
}

TEST(QKModifierFlags, EachFlagBecomesItsBit) {
  EXPECT_EQ(QKCarbonModifierFlagsFromCocoaModifierFlags(0x10000), 0x400U);
  EXPECT_EQ(QKCarbonModifierFlagsFromCocoaModifierFlags(0x20000), 0x200U);
  EXPECT_EQ(QKCarbonModifierFlagsFromCocoaModifierFlags(0x40000), 0x1000U);
  EXPECT_EQ(QKCarbonModifierFlagsFromCocoaModifierFlags(0x80000), 0x800U);
  EXPECT_EQ(QKCarbonModifierFlagsFromCocoaModifierFlags(0x100000), 0x100U);
}

TEST(QKModifierFlags, AllOtherBitsAreDropped) {
  EXPECT_EQ(QKCarbonModifierFlagsFromCocoaModifierFlags(0), 0U);
  EXPECT_EQ(QKCarbonModifierFlagsFromCocoaModifierFlags(~std::uint64_t{0x1F0000}), 0U);
  EXPECT_EQ(QKCarbonModifierFlagsFromCocoaModifierFlags(~std::uint64_t{0}), 0x1F00U);
}

}  // namespace
}  // namespace seldial
