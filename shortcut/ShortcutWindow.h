#pragma once

#include <QCoreApplication>
#include <QDialog>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "client/Protocol.h"
#include "shortcut/Shortcut.h"
#include "shortcut/Widgets.h"

class QGridLayout;
class QLabel;
class QPushButton;
class QSpinBox;

namespace seldial {

/// The window to record the shortcut that Seldial dials with, try it out, and hand it over. While
/// it is active and not recording, it registers the shortcut itself, so that pressing the shortcut
/// lights up the panel; at all other times Seldial can register it. Main thread only.
class ShortcutWindow : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(ShortcutWindow)

 public:
  /// Hands the shortcut over. Returns what went wrong, if anything, in words for the user.
  using Deliver =
      std::function<std::optional<std::string>(const HotKey& hotKey, std::uint16_t delay)>;

  /// The Seldial of this user.
  struct Ours {
    std::function<bool(const HotKey& hotKey)> holds;  ///< whether it holds a hot key

    /// Calls `used` once on any thread, when that hot key is used next, in place of dialling. Ends
    /// when the result is destroyed.
    std::function<std::shared_ptr<void>(std::function<void()> used)> tryOut;
  };

  /// `acceptText` is the text of the button that accepts. The dialog is accepted once `deliver` has
  /// succeeded. `settings`, of which the window takes ownership, is shown below the delay; null:
  /// nothing is.
  ShortcutWindow(platform::KeyboardPorts keyboard, Deliver deliver, const QString& acceptText,
                 QWidget* settings = nullptr);

  /// To be called before the window is shown. Without this no shortcut is Seldial's own.
  void setOurs(Ours ours) { ours_ = std::move(ours); }

  /// Sets the shortcut and delay shown at the start. To be called before the window is shown.
  void begin(const std::optional<HotKey>& hotKey, std::uint16_t delay);

  void accept() override;

 protected:
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  void showEvent(QShowEvent* event) override;

 private:
  void addShortcut(QGridLayout& layout);
  void addDelay(QGridLayout& layout);
  void addButtons(QGridLayout& layout, const QString& acceptText);
  void connectControls();
  void describeControls();

  void setHotKey(std::uint16_t keyCode, std::uint64_t modifierFlags);
  void clear();
  void recorded();
  void recordingChanged(bool isRecording);
  void lightUp();

  void tryOut();
  void tryOurs();
  void showAll();
  void showShortcut();
  void showState();

  const platform::KeyboardPorts keyboard_;
  const Deliver deliver_;
  Ours ours_;
  std::shared_ptr<void> oursTrial_;  ///< while Seldial's own hot key is tried out
  /// Started when it was used. Whoever still has it on another thread may outlive the window.
  const std::shared_ptr<QTimer> oursUsed_{new QTimer, [](QTimer* timer) { timer->deleteLater(); }};
  KeycapField* field_;
  QLabel* words_;
  QPushButton* record_;
  QPushButton* clear_;
  QSpinBox* delay_;
  StatusPanel* panel_;
  QPushButton* accept_ = nullptr;
  KeyRepeats repeats_;
  ShortcutTrial trial_;
  ShortcutState state_ = ShortcutState::kUnknown;
  std::optional<std::string> failure_;  ///< of the last delivery, until something changes
  QTimer light_;                        ///< runs while the panel is lit
};

}  // namespace seldial
