#include "hotkey/qt/QKHotKeyTextField.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QWindow>
#include <cstdio>

#include "hotkey/QKKeyStrings.h"
#include "platform/Installed.h"
#include "platform/RecordingKeyboard.h"
#include "platform/VirtualKeys.h"

namespace seldial {

namespace {

constexpr std::uint16_t kEscapeKey = 53;

QString upperCased(const std::string& displayString) {
  return QString::fromStdString(displayString).toUpper();
}

void logMisuse(const char* method, const char* better) {
  (void)std::fprintf(stderr, "-[QKHotKeyTextField %s] is not what you want. Use %s instead.\n",
                     method, better);
}

/// Escape is Escape wherever the user's layout has put it; as part of a combination a key is its
/// place, as for every other key.
std::uint16_t editingKeyCode(const QKeyEvent& event, const platform::RecordedKey& key) {
  const bool escapes = event.key() == Qt::Key_Escape &&
                       (key.modifierFlags & ~std::uint64_t{platform::kModifierFlagCapsLock}) == 0;
  return escapes ? kEscapeKey : key.keyCode;
}

}  // namespace

/// The field as its editing knows it: what the field owns, and so gone when it is.
class QKHotKeyTextField::EditedField final : public QKHotKeyEditedField {
 public:
  explicit EditedField(QKHotKeyTextField& field) : field_(field) {}

  [[nodiscard]] std::shared_ptr<QKHotKey> hotKey() const override { return field_.hotKey(); }
  void setHotKey(const std::shared_ptr<QKHotKey>& hotKey) override { field_.setHotKey(hotKey); }
  void setEditorString(const std::string& displayString) override {
    field_.setText(upperCased(displayString));
  }
  void sendAction() override { Q_EMIT field_.actionSent(); }
  void resignFocus() override { field_.moveFocusOn(); }

 private:
  QKHotKeyTextField& field_;
};

QKHotKeyTextField::QKHotKeyTextField(QWidget* parent)
    : QLineEdit(parent), editedField_(std::make_shared<EditedField>(*this)) {
  // Without a caret, and with nothing to type, paste or drop.
  setReadOnly(true);
  setContextMenuPolicy(Qt::PreventContextMenu);
  setAttribute(Qt::WA_InputMethodEnabled, false);
  // The glyphs stand in the order of the keys, whatever the direction of the text around them.
  setLayoutDirection(Qt::LeftToRight);
}

QKHotKeyTextField::~QKHotKeyTextField() {
  editing_.end();
}

void QKHotKeyTextField::setHotKey(const std::shared_ptr<QKHotKey>& hotKey) {
  if (hotKey == hotKey_) return;
  hotKey_ = hotKey;
  setText(hotKey ? upperCased(QKStringFromKeyCode(hotKey->keyCode(), hotKey->modifierFlags()))
                 : QString());
}

void QKHotKeyTextField::setStringValue(const QString& string) {
  logMisuse("setStringValue:", "-[QKHotKeyTextField setHotKey:]");
  setText(string);
}

QString QKHotKeyTextField::stringValue() const {
  logMisuse("stringValue", "-[QKHotKeyTextField hotKey]");
  return text();
}

bool QKHotKeyTextField::event(QEvent* event) {
  const bool isKey = event->type() == QEvent::ShortcutOverride ||
                     event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
  if (!isEditing_ || !isKey) return QLineEdit::event(event);
  // Accepted as an override first, a key comes as a press: no shortcut of the window acts on it.
  event->accept();
  if (event->type() != QEvent::ShortcutOverride) processKey(*static_cast<QKeyEvent*>(event));
  return true;
}

void QKHotKeyTextField::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  deselect();
  beginEditing();
}

void QKHotKeyTextField::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  endEditing();
  if (event->reason() == Qt::ActiveWindowFocusReason) moveFocusOn();
}

// The mouse gives the focus and selects nothing.
void QKHotKeyTextField::mousePressEvent(QMouseEvent* event) {
  event->accept();
}
void QKHotKeyTextField::mouseMoveEvent(QMouseEvent* event) {
  event->accept();
}
void QKHotKeyTextField::mouseDoubleClickEvent(QMouseEvent* event) {
  event->accept();
}

void QKHotKeyTextField::beginEditing() {
  if (isEditing_) return;
  isEditing_ = true;
  editing_.setHotKeyField(editedField_);
  editing_.begin();
  grabKeyboardOfDesktop(true);
  if (const auto keyboard = platform::installed<platform::RecordingKeyboard>()) keyboard->begin();
  Q_EMIT editingChanged(true);
}

void QKHotKeyTextField::endEditing() {
  if (!isEditing_) return;
  isEditing_ = false;
  editing_.end();
  grabKeyboardOfDesktop(false);
  Q_EMIT editingChanged(false);
}

void QKHotKeyTextField::grabKeyboardOfDesktop(bool grabbed) {
  // Refused, it is refused: what is recorded then is what reaches the window.
  if (auto* const handle = window()->windowHandle()) (void)handle->setKeyboardGrabEnabled(grabbed);
}

void QKHotKeyTextField::processKey(const QKeyEvent& event) {
  const auto keyboard = platform::installed<platform::RecordingKeyboard>();
  // A key that repeats would be recorded, and told of, again and again.
  if (repeats_.isRepeat(event) || !keyboard) return;
  const bool pressed = event.type() == QEvent::KeyPress;
  const auto key = keyboard->read({event.nativeScanCode(), event.nativeModifiers(), pressed});
  if (!key) return;
  QKHotKeyEditingEvent edit;
  edit.type =
      key->isModifier ? QKHotKeyEditingEvent::kFlagsChanged : QKHotKeyEditingEvent::kKeyDown;
  edit.keyCode = editingKeyCode(event, *key);
  edit.modifierFlags = key->modifierFlags;
  edit.charactersIgnoringModifiers = event.text().toStdString();
  if (key->isModifier || pressed) editing_.processHotkeyEvent(edit);
}

void QKHotKeyTextField::moveFocusOn() {
  if (!focusNextChild()) clearFocus();
}

}  // namespace seldial
