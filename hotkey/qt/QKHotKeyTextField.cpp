#include "hotkey/qt/QKHotKeyTextField.h"

#include <QFocusEvent>
#include <QWindow>
#include <cstdio>
#include <utility>

#include "hotkey/QKKeyStrings.h"

namespace seldial {

namespace {

void logMisuse(const char* method, const char* replacement) {
  (void)std::fprintf(stderr, "-[QKHotKeyTextField %s] is not what you want. Use %s instead.\n",
                     method, replacement);
}

/// Whether the key types Escape in the user's layout, without modifiers. With modifiers the
/// position of the key counts, as for every other key.
bool isPlainEscape(const QKeyEvent& event, std::uint64_t modifierFlags) {
  return event.key() == Qt::Key_Escape &&
         (modifierFlags & ~std::uint64_t{platform::kModifierFlagCapsLock}) == 0;
}

}  // namespace

/// The field's interface for the editing. The field owns it.
class QKHotKeyTextField::EditedField final : public QKHotKeyEditedField {
 public:
  explicit EditedField(QKHotKeyTextField& field) : field_(field) {}

  [[nodiscard]] std::shared_ptr<QKHotKey> hotKey() const override { return field_.hotKey(); }
  void setHotKey(const std::shared_ptr<QKHotKey>& hotKey) override { field_.setHotKey(hotKey); }
  void showInEditor(const std::shared_ptr<QKHotKey>& hotKey) override { field_.showHotKey(hotKey); }
  void sendAction() override { Q_EMIT field_.actionSent(); }
  void resignFocus() override { field_.advanceFocus(); }

 private:
  QKHotKeyTextField& field_;
};

bool KeyRepeats::isRepeat(const QKeyEvent& event) {
  const bool again = event.nativeScanCode() == key_ && event.timestamp() == released_;
  if (event.type() == QEvent::KeyPress) return again || event.isAutoRepeat();
  key_ = event.nativeScanCode();
  released_ = event.timestamp();
  return event.isAutoRepeat();
}

QKHotKeyTextField::QKHotKeyTextField(platform::KeyboardPorts keyboard, QWidget* parent)
    : QLineEdit(parent),
      keyboard_(std::move(keyboard)),
      editedField_(std::make_shared<EditedField>(*this)) {
  // No caret; nothing can be typed, pasted or dropped.
  setReadOnly(true);
  setContextMenuPolicy(Qt::PreventContextMenu);
  setAttribute(Qt::WA_InputMethodEnabled, false);
  // The glyphs keep their order in right-to-left languages too.
  setLayoutDirection(Qt::LeftToRight);
}

QKHotKeyTextField::~QKHotKeyTextField() {
  editing_.end();
}

void QKHotKeyTextField::setHotKey(const std::shared_ptr<QKHotKey>& hotKey) {
  if (hotKey == hotKey_) return;
  hotKey_ = hotKey;
  showHotKey(hotKey);
}

void QKHotKeyTextField::showHotKey(const std::shared_ptr<QKHotKey>& hotKey) {
  const std::string text =
      hotKey ? QKStringFromKeyCode(hotKey->keyCode(), hotKey->modifierFlags(), *keyboard_.layout)
             : std::string();
  setText(QString::fromStdString(text).toUpper());
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
  // A key whose override is accepted arrives as a key press, and no shortcut of the window reacts
  // to it.
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
  if (event->reason() == Qt::ActiveWindowFocusReason) advanceFocus();
}

// A click only sets the focus; it selects nothing.
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
  grabDesktopKeyboard(true);
  if (keyboard_.recording) keyboard_.recording->begin();
  Q_EMIT editingChanged(true);
}

void QKHotKeyTextField::endEditing() {
  if (!isEditing_) return;
  isEditing_ = false;
  editing_.end();
  grabDesktopKeyboard(false);
  Q_EMIT editingChanged(false);
}

void QKHotKeyTextField::grabDesktopKeyboard(bool grabbed) {
  // If the grab is refused, the keys that reach the window can still be recorded.
  if (auto* const handle = window()->windowHandle()) (void)handle->setKeyboardGrabEnabled(grabbed);
}

void QKHotKeyTextField::processKey(const QKeyEvent& event) {
  // A key that repeats would be recorded again and again.
  if (repeats_.isRepeat(event) || !keyboard_.recording) return;
  auto key = keyboard_.recording->read(event.nativeScanCode(), event.nativeModifiers(),
                                       event.type() == QEvent::KeyPress);
  if (!key) return;
  if (isPlainEscape(event, key->modifierFlags)) key->keyCode = platform::kVK_Escape;
  key->charactersIgnoringModifiers = event.text().toStdString();
  editing_.processHotkeyEvent(*key);
}

void QKHotKeyTextField::advanceFocus() {
  if (!focusNextChild()) clearFocus();
}

}  // namespace seldial
