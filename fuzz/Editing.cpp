// Fuzzes the recording of a hot key in a field. The input is a script of key events and other
// events of a field, see Script. The field must always show what a second, simpler implementation
// expects.
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/Check.h"
#include "hotkey/QKHotKeyEditing.h"

namespace {

using seldial::QKHotKey;
using seldial::platform::KeyEvent;

class Field final : public seldial::QKHotKeyEditedField {
 public:
  [[nodiscard]] std::shared_ptr<QKHotKey> hotKey() const override { return record; }
  void setHotKey(const std::shared_ptr<QKHotKey>& hotKey) override { record = hotKey; }
  void showInEditor(const std::shared_ptr<QKHotKey>& hotKey) override { shown = hotKey; }
  void sendAction() override { ++actions; }
  void resignFocus() override { ++resigned; }

  std::shared_ptr<QKHotKey> record;
  std::shared_ptr<QKHotKey> shown;
  int actions = 0;
  int resigned = 0;
};

/// The expected state of a field.
struct Expected {
  std::shared_ptr<QKHotKey> original;
  bool seenKeyDown = false;
  int actions = 0;
  int resigned = 0;
};

/// By the first character's code, from the UTF-8 of a line break or another.
constexpr std::string_view kCharacters[] = {
    "",    "a",      "\n",       "\r",     "\v",     "\f", "\x03", "\u0085",
    " \n", "\u2028", "\u2029\n", "\u2027", "\u0084", "\t", "\xE2", "\xE2\x80"};

bool isLineBreak(std::string_view characters) {
  if (characters.empty()) return false;
  const auto first = static_cast<unsigned char>(characters[0]);
  if (first == 3 || (first >= 10 && first <= 13)) return true;
  return characters.substr(0, 2) == "\xC2\x85" || characters.substr(0, 3) == "\xE2\x80\xA8" ||
         characters.substr(0, 3) == "\xE2\x80\xA9";
}

/// The steps of the input, eight bytes each: the action, the event's type, key code (2 bytes),
/// flags (3 bytes, shifted left by 8), characters.
class Script {
 public:
  explicit Script(std::string_view input) : input_(input) { edit(); }

  void run() {
    for (; input_.size() >= 8; input_.remove_prefix(8)) {
      step();
      check();
    }
  }

 private:
  [[nodiscard]] std::uint8_t byte(std::size_t index) const {
    return static_cast<std::uint8_t>(input_[index]);
  }

  /// Begins the editing of a field with its current record.
  void edit() {
    editing_.setHotKeyField(field_);
    expected_.original = field_->record;
    editing_.begin();
    expected_.seenKeyDown = false;
    edited_ = true;
  }

  void step() {
    switch (byte(0) % 16) {
      case 0:
        return edit();
      case 1:
        editing_.end();
        edited_ = false;
        return;
      case 2:  // the field is destroyed while it is edited
        field_ = std::make_shared<Field>();
        expected_ = {nullptr, expected_.seenKeyDown, 0, 0};
        edited_ = false;
        return;
      case 3:
        field_->record = nullptr;
        return;
      default:
        return press(event());
    }
  }

  [[nodiscard]] KeyEvent event() const {
    KeyEvent event;
    event.type = byte(1) < 100 ? 10 : byte(1) < 200 ? 12 : byte(1);
    event.keyCode = static_cast<std::uint16_t>(byte(2) | (byte(3) & 1) << 8);
    if (byte(3) > 200) event.keyCode = 53;
    event.modifierFlags = std::uint64_t{byte(4)} << 16U | std::uint64_t{byte(5)} << 8U | byte(6);
    event.charactersIgnoringModifiers = kCharacters[byte(7) % std::size(kCharacters)];
    return event;
  }

  void press(const KeyEvent& event) {
    const auto before = field_->record;
    editing_.processHotkeyEvent(event);
    const bool modifiers = (event.modifierFlags & 0x9E0000U) != 0;
    const bool down = event.type == 10;
    const bool flags = event.type == 12 && !expected_.seenKeyDown;
    expected_.seenKeyDown = expected_.seenKeyDown || down;
    if (edited_ && modifiers && (down || flags)) return expectRecorded(event);
    const bool escape = event.keyCode == 53;
    if (edited_ && !modifiers && down &&
        (escape || isLineBreak(event.charactersIgnoringModifiers))) {
      ++expected_.actions;
      ++expected_.resigned;
      CHECK(field_->record == (escape ? expected_.original : before));
      CHECK(!escape || field_->shown == expected_.original);
      return;
    }
    CHECK(field_->record == before);
  }

  void expectRecorded(const KeyEvent& event) {
    ++expected_.actions;
    CHECK(field_->record && field_->record != expected_.original);
    CHECK(field_->record->keyCode() == event.keyCode);
    CHECK(field_->record->modifierFlags() == event.modifierFlags);
    CHECK(field_->shown == field_->record);
  }

  void check() const {
    CHECK(field_->actions == expected_.actions);
    CHECK(field_->resigned == expected_.resigned);
  }

  std::string_view input_;
  std::shared_ptr<Field> field_ = std::make_shared<Field>();
  Expected expected_;
  bool edited_ = false;
  seldial::QKHotKeyEditing editing_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Script({reinterpret_cast<const char*>(data), size}).run();
  return 0;
}
