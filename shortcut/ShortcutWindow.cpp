#include "shortcut/ShortcutWindow.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSpinBox>

#include "shortcut/Shortcut.h"

namespace seldial {
namespace {

constexpr int kMargin = 28;
constexpr int kSpacing = 12;
constexpr int kFieldWidth = 424;
constexpr qreal kKeycapScale = 1.6;  // of the desktop's own font
constexpr std::chrono::milliseconds kLitTime{1500};

void enlargeFont(KeycapField& field) {
  QFont font = field.font();
  font.setPointSizeF(font.pointSizeF() * kKeycapScale);
  field.setFont(font);
  field.setMinimumSize(kFieldWidth, 2 * QFontMetrics(font).height() + kMargin);
}

}  // namespace

ShortcutWindow::ShortcutWindow(platform::KeyboardPorts keyboard, Deliver deliver,
                               const QString& acceptText, QWidget* settings)
    : keyboard_(std::move(keyboard)),
      deliver_(std::move(deliver)),
      field_(new KeycapField(keyboard_, this)),
      shortcutText_(new QLabel(this)),
      record_(new QPushButton(tr("&Record"), this)),
      clear_(new QPushButton(tr("C&lear"), this)),
      delay_(new QSpinBox(this)),
      panel_(new StatusPanel(this)) {
  setWindowTitle(settings != nullptr ? tr("Seldial settings") : tr("Seldial shortcut"));
  litTimer_.setSingleShot(true);
  seldialUsed_->setSingleShot(true);
  litTimer_.setInterval(kLitTime);
  auto* const layout = new QGridLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setHorizontalSpacing(kSpacing);
  layout->setVerticalSpacing(kSpacing);
  layout->setColumnStretch(0, 1);
  layout->setSizeConstraint(QLayout::SetFixedSize);  // exactly as large as its contents
  addShortcut(*layout);
  addDelay(*layout);
  if (settings != nullptr) {
    layout->addWidget(settings, layout->rowCount(), 0, 1, -1);
    layout->setRowMinimumHeight(layout->rowCount(), kSpacing);
  }
  layout->addWidget(panel_, layout->rowCount(), 0, 1, -1);
  addButtons(*layout, acceptText);
  connectControls();
  describeControls();
  showAll();
}

void ShortcutWindow::addShortcut(QGridLayout& layout) {
  auto* const title = new QLabel(tr("Select a number anywhere, then press"), this);
  enlargeFont(*field_);
  field_->setHint(tr("Click here and press a shortcut"));
  // The Tab key must not start a recording: there is a button for that.
  field_->setFocusPolicy(Qt::ClickFocus);
  layout.addWidget(title, 0, 0, 1, -1);
  layout.addWidget(field_, 1, 0, 1, -1);
  layout.addWidget(shortcutText_, 2, 0);
  layout.addWidget(record_, 2, 1);
  layout.addWidget(clear_, 2, 2);
  layout.setRowMinimumHeight(3, kSpacing);
}

void ShortcutWindow::addDelay(QGridLayout& layout) {
  auto* const label = new QLabel(tr("&Time to copy the selection"), this);
  label->setBuddy(delay_);
  delay_->setRange(0, UINT16_MAX);
  delay_->setSingleStep(50);
  delay_->setSuffix(QStringLiteral(" ms"));
  layout.addWidget(label, 4, 0);
  layout.addWidget(delay_, 4, 1, 1, 2);
  layout.setRowMinimumHeight(5, kSpacing);
}

void ShortcutWindow::addButtons(QGridLayout& layout, const QString& acceptText) {
  auto* const box = new QDialogButtonBox(this);
  accept_ = box->addButton(acceptText, QDialogButtonBox::AcceptRole);
  auto* const cancel = box->addButton(tr("&Cancel"), QDialogButtonBox::RejectRole);
  accept_->setDefault(true);
  cancel->setObjectName(QStringLiteral("cancel"));
  cancel->setAccessibleDescription(tr("Closes the window and changes nothing."));
  connect(box, &QDialogButtonBox::accepted, this, &ShortcutWindow::accept);
  connect(box, &QDialogButtonBox::rejected, this, &ShortcutWindow::reject);
  const int row = layout.rowCount();
  layout.setRowMinimumHeight(row, kSpacing);
  layout.addWidget(box, row + 1, 0, 1, -1);
}

void ShortcutWindow::connectControls() {
  connect(record_, &QPushButton::clicked, this, [this] { field_->setFocus(Qt::OtherFocusReason); });
  connect(clear_, &QPushButton::clicked, this, &ShortcutWindow::clear);
  connect(field_, &QKHotKeyTextField::actionSent, this, &ShortcutWindow::recorded);
  connect(field_, &QKHotKeyTextField::editingChanged, this, &ShortcutWindow::recordingChanged);
  for (QObject* const watched : {static_cast<QObject*>(this), static_cast<QObject*>(accept_),
                                 static_cast<QObject*>(record_)}) {
    watched->installEventFilter(this);
  }
  connect(&litTimer_, &QTimer::timeout, this, &ShortcutWindow::showAll);
  connect(seldialUsed_.get(), &QTimer::timeout, this, [this] {
    if (!seldialTrial_) return;
    lightUp();
    tryOut();
  });
}

void ShortcutWindow::describeControls() {
  field_->setObjectName(QStringLiteral("shortcut"));
  shortcutText_->setObjectName(QStringLiteral("shortcut-text"));
  record_->setObjectName(QStringLiteral("record"));
  clear_->setObjectName(QStringLiteral("clear"));
  delay_->setObjectName(QStringLiteral("delay"));
  panel_->setObjectName(QStringLiteral("status"));
  accept_->setObjectName(QStringLiteral("accept"));
  field_->setAccessibleName(tr("Shortcut"));
  record_->setAccessibleName(tr("Record a new shortcut"));
  record_->setAccessibleDescription(
      tr("Press the new shortcut afterwards. Return keeps it, Escape brings the old one "
         "back."));
  clear_->setAccessibleName(tr("Clear the shortcut"));
  clear_->setAccessibleDescription(tr("Leaves no shortcut until one is recorded."));
  const auto delay =
      tr("How long the other application gets to copy its selection, in milliseconds.");
  delay_->setAccessibleName(tr("Time to copy the selection"));
  delay_->setAccessibleDescription(delay);
  delay_->setToolTip(delay);
  accept_->setAccessibleDescription(tr("Hands the shortcut over and closes the window."));
}

void ShortcutWindow::begin(const std::optional<HotKey>& hotKey, std::uint16_t delay) {
  delay_->setValue(delay);
  if (hotKey) setHotKey(hotKey->virtualKey, hotKey->modifierFlags);
  showAll();
}

/// Gives the field a record that lights up the panel when it is used.
void ShortcutWindow::setHotKey(std::uint16_t keyCode, std::uint64_t modifierFlags) {
  field_->setHotKey(QKHotKey::hotKeyWithKeyCode(
      keyCode, modifierFlags, [this](const QKKeyEvent& /*event*/) { lightUp(); }));
}

void ShortcutWindow::clear() {
  litTimer_.stop();
  trial_.stop();
  field_->setHotKey(nullptr);
  failure_.reset();
  tryOut();
  delay_->setFocus(Qt::OtherFocusReason);
}

void ShortcutWindow::recorded() {
  const auto hotKey = field_->hotKey();
  // A first recording has no previous record to take the task from.
  if (hotKey && !hotKey->task()) setHotKey(hotKey->keyCode(), hotKey->modifierFlags());
  showAll();
}

void ShortcutWindow::recordingChanged(bool isRecording) {
  if (isRecording) litTimer_.stop();
  failure_.reset();
  tryOut();
}

void ShortcutWindow::lightUp() {
  litTimer_.start();
  showAll();
}

void ShortcutWindow::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::ActivationChange) tryOut();
}

void ShortcutWindow::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  (field_->hotKey() ? accept_ : record_)->setFocus(Qt::OtherFocusReason);
}

bool ShortcutWindow::eventFilter(QObject* watched, QEvent* event) {
  // The Return or Escape key that ended a recording may still be held. Its repeats are ignored.
  const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
  const bool repeats = isKey && repeats_.isRepeat(*static_cast<QKeyEvent*>(event));
  return repeats || QDialog::eventFilter(watched, event);
}

/// After a recording, the focus moves to the button that accepts or, if that is disabled, to the
/// one that records.
bool ShortcutWindow::focusNextPrevChild(bool next) {
  if (!field_->hasFocus()) return QDialog::focusNextPrevChild(next);
  (accept_->isEnabled() ? accept_ : record_)->setFocus(Qt::TabFocusReason);
  return true;
}

void ShortcutWindow::accept() {
  if (!accept_->isEnabled()) return;
  // Seldial must be able to register it.
  seldialTrial_.reset();
  trial_.stop();
  failure_ = deliver_(hotKeyOf(*field_->hotKey()), static_cast<std::uint16_t>(delay_->value()));
  if (!failure_) return QDialog::accept();
  tryOut();
}

/// Registers the shortcut while it can be tried out. The last result stays shown.
void ShortcutWindow::tryOut() {
  seldialTrial_.reset();
  if (!isActiveWindow() || field_->isEditing()) {
    trial_.stop();
  } else {
    state_ = trial_.start(field_->hotKey());
    // What Seldial holds on Wayland is free on Xwayland.
    const bool mayBeHeldBySeldial =
        state_ == ShortcutState::kHeld || (onWayland_ && state_ == ShortcutState::kFree);
    if (mayBeHeldBySeldial) trySeldialHotKey();
  }
  showAll();
}

/// If Seldial holds the shortcut, Seldial reports its use.
void ShortcutWindow::trySeldialHotKey() {
  if (!seldialHotKey_.holds || !seldialHotKey_.holds(hotKeyOf(*field_->hotKey()))) return;
  state_ = ShortcutState::kHeldBySeldial;
  seldialTrial_ = seldialHotKey_.tryOut([used = seldialUsed_] {
    QMetaObject::invokeMethod(used.get(), "start", Qt::QueuedConnection);  // from any thread
  });
}

void ShortcutWindow::showAll() {
  const auto hotKey = field_->hotKey();
  // Does not depend on state_, which belongs to the previous shortcut while a new one is recorded.
  accept_->setEnabled(hotKey && !hasOnlyModifiers(*hotKey) && ShortcutTrial::isUsable(*hotKey));
  clear_->setEnabled(hotKey != nullptr);
  showShortcut();
  showState();
}

void ShortcutWindow::showShortcut() {
  const auto hotKey = field_->hotKey();
  const QString text = hotKey ? shortcutText(*hotKey, *keyboard_.layout) : tr("No shortcut yet");
  shortcutText_->setText(field_->isEditing() ? tr("Press the new shortcut…") : text);
  field_->setAccessibleDescription(text);
}

void ShortcutWindow::showState() {
  using Kind = StatusPanel::Kind;
  const auto hotKey = field_->hotKey();
  if (field_->isEditing()) {
    panel_->setStatus(Kind::kPlain, tr("Recording"),
                      tr("Return keeps the shortcut, Escape brings the old one back."));
  } else if (litTimer_.isActive()) {
    panel_->setStatus(Kind::kLit, tr("It works"), shortcutText(*hotKey, *keyboard_.layout));
  } else if (failure_) {
    panel_->setStatus(Kind::kWarning, tr("The shortcut was not handed over"),
                      QString::fromStdString(*failure_));
  } else if (!hotKey) {
    panel_->setStatus(
        Kind::kPlain, tr("Try it here"),
        tr("Record a shortcut first: modifier keys, such as Ctrl and Alt, and one key."));
  } else if (hasOnlyModifiers(*hotKey)) {
    panel_->setStatus(
        Kind::kWarning, tr("One key is missing"),
        tr("Modifier keys alone cannot be a shortcut. Press them with one more key."));
  } else if (state_ == ShortcutState::kUnusable) {
    panel_->setStatus(Kind::kWarning, tr("This desktop cannot use it"),
                      tr("The keyboard has no such key, or Seldial uses the combination itself to "
                         "copy."));
  } else if (state_ == ShortcutState::kHeldBySeldial) {
    panel_->setStatus(Kind::kPlain, tr("Seldial uses this shortcut"),
                      tr("Press it and release it: this panel lights up, and nothing is dialled."));
  } else if (state_ == ShortcutState::kHeld) {
    panel_->setStatus(Kind::kWarning, tr("Another program holds this shortcut"),
                      tr("If that program is Seldial, keep it. Otherwise record another one."));
  } else {
    panel_->setStatus(
        Kind::kPlain, tr("Try it here"),
        withWaylandNote(tr("Press the shortcut and release it: this panel lights up.")));
  }
}

/// On Xwayland the window gets the keys that the compositor passes on. That does not show whether
/// Seldial will get the combination as a global shortcut.
QString ShortcutWindow::withWaylandNote(const QString& text) const {
  if (!onWayland_) return text;
  return text + QLatin1Char(' ') +
         tr("On Wayland this does not show whether the desktop allows it. Seldial reports that "
            "later.");
}

}  // namespace seldial
