// Recording a hot key in a field that belongs to no toolkit.
#include "hotkey/QKHotKeyEditing.h"
#include "hotkey/QKKeyStrings.h"
#include "tests/hotkey/HotKeyTest.h"
#include "tests/support/FakeKeyboardLayout.h"

namespace seldial {
namespace {

using Journal = tests::Calls;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint16_t kKeyK = platform::kVK_ANSI_K;
constexpr std::uint16_t kKeyReturn = platform::kVK_Return;
constexpr std::uint16_t kKeyEscape = platform::kVK_Escape;
constexpr std::uint16_t kKeyLeftCommand = platform::kVK_Command;
constexpr std::uint64_t kShift = platform::kModifierFlagShift;

/// Records the calls in its journal.
class RecordingField final : public QKHotKeyEditedField {
 public:
  [[nodiscard]] std::shared_ptr<QKHotKey> hotKey() const override { return shown; }
  void setHotKey(const std::shared_ptr<QKHotKey>& hotKey) override {
    if (hotKey == shown) return;
    shown = hotKey;
    journal.emplace_back("record");
  }
  void showInEditor(const std::shared_ptr<QKHotKey>& hotKey) override {
    journal.push_back(
        "show " + (hotKey ? QKStringFromKeyCode(hotKey->keyCode(), hotKey->modifierFlags(), layout)
                          : std::string()));
  }
  void sendAction() override {
    journal.emplace_back("action");
    onAction();
  }
  void resignFocus() override {
    journal.emplace_back("resign");
    onResign();
  }

  std::shared_ptr<QKHotKey> shown;
  tests::FakeKeyboardLayout layout;
  Journal journal;
  std::function<void()> onAction = [] {};
  std::function<void()> onResign = [] {};
};

class QKHotKeyEditingTest : public HotKeyTest {
 protected:
  QKHotKeyEditingTest() {
    field->layout.keys = {{kKeyK, "k"}, {kKeyV, "v"}, {76, "?"}};
    field->onResign = [this] { editing.end(); };
    field->shown = original;
    begin();
  }

  void begin() {
    editing.setHotKeyField(field);
    editing.begin();
  }

  void keyDown(std::uint16_t keyCode, std::uint64_t flags, const std::string& characters = "x") {
    process(platform::KeyEvent::kKeyDown, keyCode, flags, characters);
  }
  void flagsChanged(std::uint16_t keyCode, std::uint64_t flags) {
    process(platform::KeyEvent::kFlagsChanged, keyCode, flags);
  }

  void process(std::uint32_t type, std::uint16_t keyCode, std::uint64_t flags,
               const std::string& characters = "") {
    platform::KeyEvent event;
    event.type = type;
    event.keyCode = keyCode;
    event.modifierFlags = flags;
    event.charactersIgnoringModifiers = characters;
    editing.processHotkeyEvent(event);
  }

  int used = 0;
  const std::shared_ptr<QKHotKey> original =
      QKHotKey::hotKeyWithKeyCode(kKeyV, kControl, counting(used));
  std::shared_ptr<RecordingField> field = std::make_shared<RecordingField>();
  QKHotKeyEditing editing;
};

TEST_F(QKHotKeyEditingTest, CommandShiftKSetsTheRecordShowsItAndSendsTheActionOnce) {
  keyDown(kKeyK, kCommand | kShift, "k");
  EXPECT_THAT(field->journal, ElementsAre("record", "show ⇧⌘k", "action"));
  EXPECT_EQ(field->shown->keyCode(), kKeyK);
  EXPECT_EQ(field->shown->modifierFlags(), kCommand | kShift);
}

TEST_F(QKHotKeyEditingTest, KAloneDoesNothing) {
  keyDown(kKeyK, 0, "k");
  EXPECT_THAT(field->journal, IsEmpty());
  EXPECT_EQ(field->shown, original);
}

TEST_F(QKHotKeyEditingTest, CommandHeldBeforeAnyKeyDownShowsItsGlyphAndSendsTheAction) {
  flagsChanged(kKeyLeftCommand, kCommand);
  EXPECT_THAT(field->journal, ElementsAre("record", "show ⌘", "action"));
  EXPECT_EQ(field->shown->keyCode(), kKeyLeftCommand);
}

TEST_F(QKHotKeyEditingTest, AfterAKeyDownFurtherModifierChangesAreIgnored) {
  keyDown(kKeyK, kCommand);
  field->journal.clear();
  flagsChanged(56, kCommand | kShift);
  flagsChanged(kKeyLeftCommand, 0);
  EXPECT_THAT(field->journal, IsEmpty());
  EXPECT_EQ(field->shown->keyCode(), kKeyK);
}

TEST_F(QKHotKeyEditingTest, EscapeRestoresTheInitialRecordAndSendsTheAction) {
  keyDown(kKeyK, kCommand);
  keyDown(kKeyK, kCommand | kShift);
  field->journal.clear();
  keyDown(kKeyEscape, 0, "\x1B");
  EXPECT_THAT(field->journal, ElementsAre("record", "show ⌃v", "action", "resign"));
  EXPECT_EQ(field->shown, original);
}

TEST_F(QKHotKeyEditingTest, ReturnKeepsTheCurrentRecordAndSendsTheAction) {
  keyDown(kKeyK, kCommand);
  const auto recorded = field->shown;
  field->journal.clear();
  keyDown(kKeyReturn, 0, "\r");
  EXPECT_THAT(field->journal, ElementsAre("action", "resign"));
  EXPECT_EQ(field->shown, recorded);
}

TEST_F(QKHotKeyEditingTest, AReturnWithShiftHeldIsRecorded) {
  keyDown(kKeyReturn, kShift, "\r");
  EXPECT_THAT(field->journal, ElementsAre("record", "show ⇧↩", "action"));
  EXPECT_EQ(field->shown->keyCode(), kKeyReturn);
  EXPECT_EQ(field->shown->modifierFlags(), kShift);
}

TEST_F(QKHotKeyEditingTest, AnEscapeWithAModifierIsRecordedToo) {
  keyDown(kKeyEscape, kCommand, "\x1B");
  EXPECT_THAT(field->journal, ElementsAre("record", "show ⌘⎋", "action"));
}

TEST_F(QKHotKeyEditingTest, EscapeBeforeAnyRecordingChangesNothingButEndsTheEditing) {
  keyDown(kKeyEscape, 0, "\x1B");
  EXPECT_THAT(field->journal, ElementsAre("show ⌃v", "action", "resign"));
  EXPECT_EQ(field->shown, original);
}

TEST_F(QKHotKeyEditingTest, EscapeInAnEmptyFieldEmptiesItAgain) {
  field->shown.reset();
  begin();
  keyDown(kKeyK, kCommand);
  field->journal.clear();
  keyDown(kKeyEscape, 0, "\x1B");
  EXPECT_THAT(field->journal, ElementsAre("record", "show ", "action", "resign"));
  EXPECT_EQ(field->shown, nullptr);
}

TEST_F(QKHotKeyEditingTest, EveryLineBreakEndsTheEditing) {
  for (const std::string lineBreak :
       {"\n", "\v", "\f", "\r", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9", "\x03", "\r\n"}) {
    begin();
    field->journal.clear();
    keyDown(76, 0, lineBreak);
    EXPECT_THAT(field->journal, ElementsAre("action", "resign"))
        << testing::PrintToString(lineBreak);
  }
}

TEST_F(QKHotKeyEditingTest, OtherFirstCharactersDoNot) {
  for (const std::string characters :
       {"", "\t", "\x0E", "\x02", "\x04", "\x1B", " \r", "\xC2\x84", "\xC2\x86", "\xE2\x80\xA7",
        "\xE2\x80\xAA", "\xE2\x80", "\xC2"}) {
    keyDown(76, 0, characters);
    EXPECT_THAT(field->journal, IsEmpty()) << testing::PrintToString(characters);
  }
}

TEST_F(QKHotKeyEditingTest, ShiftControlOptionCommandAndFunctionEachMakeACombination) {
  for (const std::uint64_t flag : {0x20000U, 0x40000U, 0x80000U, 0x100000U, 0x800000U}) {
    field->journal.clear();
    keyDown(kKeyK, flag);
    EXPECT_EQ(field->journal.size(), 3U) << flag;
    EXPECT_EQ(field->shown->modifierFlags(), flag);
  }
}

TEST_F(QKHotKeyEditingTest, OtherFlagsMakeNone) {
  constexpr std::uint64_t kOthers = ~std::uint64_t{0x9E0000};
  keyDown(kKeyK, kOthers);
  EXPECT_THAT(field->journal, IsEmpty());
  keyDown(kKeyReturn, kOthers, "\r");
  EXPECT_THAT(field->journal, ElementsAre("action", "resign"));
}

TEST_F(QKHotKeyEditingTest, ACombinationKeepsTheWholeFlagsOfItsEvent) {
  constexpr std::uint64_t kCapsLockAndDeviceBits = 0x10000 | 0x108;
  keyDown(kKeyK, kCommand | kCapsLockAndDeviceBits);
  EXPECT_EQ(field->shown->modifierFlags(), kCommand | kCapsLockAndDeviceBits);
}

TEST_F(QKHotKeyEditingTest, AReleasedModifierIsNotRecorded) {
  flagsChanged(kKeyLeftCommand, 0);
  flagsChanged(57, platform::kModifierFlagCapsLock);
  EXPECT_THAT(field->journal, IsEmpty());
}

TEST_F(QKHotKeyEditingTest, EveryModifierBeforeTheFirstKeyIsRecorded) {
  flagsChanged(59, kControl);
  flagsChanged(kKeyLeftCommand, kControl | kCommand);
  flagsChanged(59, kCommand);
  EXPECT_THAT(field->journal, ElementsAre("record", "show ⌃", "action", "record", "show ⌃⌘",
                                          "action", "record", "show ⌘", "action"));
}

TEST_F(QKHotKeyEditingTest, AKeyAloneIsAKeyDownSeenAllTheSame) {
  keyDown(kKeyK, 0);
  flagsChanged(kKeyLeftCommand, kCommand);
  EXPECT_THAT(field->journal, IsEmpty());
}

TEST_F(QKHotKeyEditingTest, TheNextEditingHasSeenNoKeyDown) {
  keyDown(kKeyK, 0);
  editing.end();
  begin();
  flagsChanged(kKeyLeftCommand, kCommand);
  EXPECT_THAT(field->journal, ElementsAre("record", "show ⌘", "action"));
}

TEST_F(QKHotKeyEditingTest, EventsOfOtherTypesAreIgnored) {
  constexpr std::uint32_t kKeyUp = 11;
  process(kKeyUp, kKeyK, kCommand, "k");
  process(kKeyUp, kKeyEscape, 0, "\x1B");
  EXPECT_THAT(field->journal, IsEmpty());
  flagsChanged(kKeyLeftCommand, kCommand);
  EXPECT_THAT(field->journal, ElementsAre("record", "show ⌘", "action"));
}

TEST_F(QKHotKeyEditingTest, EditingContinuesAfterARecordingAndEachReplacesTheRecord) {
  keyDown(kKeyK, kCommand);
  const auto first = field->shown;
  keyDown(kKeyV, kCommand);
  EXPECT_NE(field->shown, first);
  EXPECT_EQ(field->shown->keyCode(), kKeyV);
  EXPECT_THAT(field->journal,
              ElementsAre("record", "show ⌘k", "action", "record", "show ⌘v", "action"));
}

TEST_F(QKHotKeyEditingTest, ARecordingHasTheTaskOfTheInitialRecord) {
  keyDown(kKeyK, kCommand);
  keyDown(kKeyK, kCommand | kShift);
  field->shown->invokeWithEvent({});
  EXPECT_EQ(used, 1);
}

TEST_F(QKHotKeyEditingTest, ARecordGivenToTheFieldMeanwhileChangesNoTaskAndIsNotRestored) {
  field->shown = QKHotKey::hotKeyWithKeyCode(kKeyK, kControl, nullptr);
  keyDown(kKeyK, kCommand);
  field->shown->invokeWithEvent({});
  EXPECT_EQ(used, 1);
  keyDown(kKeyEscape, 0);
  EXPECT_EQ(field->shown, original);
}

TEST_F(QKHotKeyEditingTest, ARecordingInAnEmptyFieldHasNoTask) {
  field->shown.reset();
  begin();
  keyDown(kKeyK, kCommand);
  EXPECT_FALSE(field->shown->task());
}

TEST_F(QKHotKeyEditingTest, ARecordingIsNotRegistered) {
  keyDown(kKeyK, kCommand);
  EXPECT_EQ(port->requests, 0);
  EXPECT_EQ(field->shown->hotKeyRef, std::nullopt);
}

TEST_F(QKHotKeyEditingTest, LosingTheFocusKeepsTheLastRecordAndSendsNoAction) {
  keyDown(kKeyK, kCommand);
  const auto recorded = field->shown;
  field->journal.clear();
  editing.end();
  EXPECT_THAT(field->journal, IsEmpty());
  EXPECT_EQ(field->shown, recorded);
  keyDown(kKeyV, kCommand);
  keyDown(kKeyEscape, 0);
  EXPECT_THAT(field->journal, IsEmpty());
}

TEST_F(QKHotKeyEditingTest, TheEndReleasesTheInitialRecord) {
  field->shown = QKHotKey::hotKeyWithKeyCode(1, kCommand, nullptr);
  const std::weak_ptr<QKHotKey> watched = field->shown;
  begin();
  keyDown(kKeyK, kCommand);
  EXPECT_FALSE(watched.expired());
  editing.end();
  EXPECT_TRUE(watched.expired());
}

TEST_F(QKHotKeyEditingTest, TheFieldIsNotKeptAlive) {
  const std::weak_ptr<RecordingField> watched = field;
  field.reset();
  EXPECT_TRUE(watched.expired());
  keyDown(kKeyK, kCommand);
  keyDown(kKeyEscape, 0);
}

TEST_F(QKHotKeyEditingTest, AFieldMayBeDestroyedByItsAction) {
  const auto* const dropped = field.get();
  Journal journal;
  field->onAction = [&] { field.reset(); };
  field->onResign = [&] { journal = dropped->journal; };
  keyDown(kKeyReturn, 0, "\r");
  EXPECT_THAT(journal, ElementsAre("action", "resign"));
}

TEST_F(QKHotKeyEditingTest, AnActionMayEndTheEditing) {
  field->onAction = [this] { editing.end(); };
  keyDown(kKeyEscape, 0);
  EXPECT_THAT(field->journal, ElementsAre("show ⌃v", "action", "resign"));
}

}  // namespace
}  // namespace seldial
