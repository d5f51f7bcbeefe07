// Several hot key fields with one editor, in the order in which AppKit requests, begins and ends
// the editing.
#include <gtest/gtest.h>

#include "hotkey/appkit/QKSharedEditing.h"
#include "platform/VirtualKeys.h"

namespace seldial {
namespace {

using platform::kVK_ANSI_A;
using platform::kVK_ANSI_B;
using platform::kVK_Escape;

/// A field that initially shows the hot key of one key.
class Field final : public QKHotKeyEditedField {
 public:
  explicit Field(std::uint16_t keyCode) : shown_(QKHotKey::hotKeyWithKeyCode(keyCode, 0, {})) {}

  [[nodiscard]] std::uint16_t keyCode() const { return shown_->keyCode(); }

  [[nodiscard]] std::shared_ptr<QKHotKey> hotKey() const override { return shown_; }
  void setHotKey(const std::shared_ptr<QKHotKey>& hotKey) override { shown_ = hotKey; }
  void showInEditor(const std::shared_ptr<QKHotKey>& /*hotKey*/) override {}
  void sendAction() override {}
  void resignFocus() override {}

 private:
  std::shared_ptr<QKHotKey> shown_;
};

struct QKSharedEditingTest : testing::Test {
  /// Whether a field takes the key; with Command unless it is Escape.
  bool press(std::uint16_t keyCode) {
    platform::KeyEvent event;
    event.type = platform::KeyEvent::kKeyDown;
    event.keyCode = keyCode;
    if (keyCode != kVK_Escape) event.modifierFlags = platform::kModifierFlagCommand;
    return editing.processHotkeyEvent(event);
  }

  static constexpr std::uint16_t kFirstKey = 100;
  static constexpr std::uint16_t kSecondKey = 101;
  std::shared_ptr<Field> first = std::make_shared<Field>(kFirstKey);
  std::shared_ptr<Field> second = std::make_shared<Field>(kSecondKey);
  QKSharedEditing editing;
};

TEST_F(QKSharedEditingTest, RecordsIntoTheFieldThatAsked) {
  editing.setHotKeyField(first);
  editing.begin();
  EXPECT_TRUE(press(kVK_ANSI_A));
  EXPECT_EQ(first->keyCode(), kVK_ANSI_A);
}

TEST_F(QKSharedEditingTest, RestoresTheFirstRecordAlsoWhenTheSameFieldAskedAgain) {
  editing.setHotKeyField(first);
  editing.begin();
  EXPECT_TRUE(press(kVK_ANSI_A));
  editing.setHotKeyField(first);
  editing.begin();  // AppKit has moved the editor
  EXPECT_TRUE(press(kVK_Escape));
  EXPECT_EQ(first->keyCode(), kFirstKey);
}

TEST_F(QKSharedEditingTest, MovesToAFieldOfAnotherWindowThoughTheFirstNeverLostItsFocus) {
  editing.setHotKeyField(first);
  editing.begin();
  editing.setHotKeyField(second);
  editing.begin();
  EXPECT_TRUE(press(kVK_ANSI_A));
  EXPECT_EQ(second->keyCode(), kVK_ANSI_A);
  EXPECT_EQ(first->keyCode(), kFirstKey);
  EXPECT_TRUE(press(kVK_Escape));
  EXPECT_EQ(second->keyCode(), kSecondKey);
}

TEST_F(QKSharedEditingTest, MovesToAFieldThatAskedBeforeTheFirstLostItsFocus) {
  editing.setHotKeyField(first);
  editing.begin();
  editing.setHotKeyField(second);
  editing.end();
  editing.begin();
  EXPECT_TRUE(press(kVK_ANSI_A));
  EXPECT_EQ(second->keyCode(), kVK_ANSI_A);
  EXPECT_EQ(first->keyCode(), kFirstKey);
}

TEST_F(QKSharedEditingTest, ContinuesInTheEditedFieldWhenAnotherOnlyAsks) {
  editing.setHotKeyField(first);
  editing.begin();
  editing.setHotKeyField(second);
  EXPECT_TRUE(press(kVK_ANSI_A));
  EXPECT_EQ(first->keyCode(), kVK_ANSI_A);
  EXPECT_EQ(second->keyCode(), kSecondKey);
  EXPECT_TRUE(press(kVK_Escape));
  EXPECT_EQ(first->keyCode(), kFirstKey);
}

TEST_F(QKSharedEditingTest, ForgetsAFieldThatOnlyAsked) {
  editing.setHotKeyField(first);
  editing.begin();
  editing.setHotKeyField(second);
  editing.end();
  editing.setHotKeyField(first);
  editing.begin();
  EXPECT_TRUE(press(kVK_ANSI_B));
  EXPECT_EQ(first->keyCode(), kVK_ANSI_B);
  EXPECT_EQ(second->keyCode(), kSecondKey);
}

TEST_F(QKSharedEditingTest, TakesNoKeyOnceItHasEnded) {
  editing.setHotKeyField(first);
  editing.begin();
  editing.setHotKeyField(first);
  editing.end();
  EXPECT_FALSE(press(kVK_ANSI_A));
  editing.begin();
  EXPECT_FALSE(press(kVK_ANSI_A));
  EXPECT_EQ(first->keyCode(), kFirstKey);
}

TEST_F(QKSharedEditingTest, TakesNoKeyOnceItsFieldIsGone) {
  editing.setHotKeyField(first);
  editing.begin();
  first.reset();
  EXPECT_FALSE(press(kVK_ANSI_A));
}

TEST_F(QKSharedEditingTest, TakesNoKeyOnceItsFieldWasTakenAway) {
  editing.setHotKeyField(first);
  editing.begin();
  editing.setHotKeyField(nullptr);
  EXPECT_FALSE(press(kVK_ANSI_A));
  EXPECT_EQ(first->keyCode(), kFirstKey);
}

}  // namespace
}  // namespace seldial
