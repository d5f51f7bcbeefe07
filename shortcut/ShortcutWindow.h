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

/// The window for recording the shortcut that Seldial dials with, trying it out, and passing it on.
/// While it is active and not recording, it registers the shortcut itself, so that pressing the
/// shortcut lights up the panel; at all other times Seldial can register it. Main thread only.
class ShortcutWindow : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(ShortcutWindow)

 public:
  /// Passes the shortcut on. Returns the error, if any, as text for the user.
  using Deliver =
      std::function<std::optional<std::string>(const HotKey& hotKey, std::uint16_t delay)>;

  /// Access to the user's running Seldial.
  struct SeldialHotKey {
    std::function<bool(const HotKey& hotKey)> holds;  ///< whether it holds a hot key

    /// Makes the next use of that hot key call `used`, once and on any thread, instead of dialling.
    /// Destroying the result cancels this.
    std::function<std::shared_ptr<void>(std::function<void()> used)> tryOut;
  };

  /// `acceptText` is the text of the button that accepts. The dialog is accepted once `deliver` has
  /// succeeded. `settings` is shown below the delay and may be null; the window takes ownership.
  ShortcutWindow(platform::KeyboardPorts keyboard, Deliver deliver, const QString& acceptText,
                 QWidget* settings = nullptr);

  /// Call this before the window is shown. Without it the window cannot recognise Seldial's own hot
  /// key.
  void setSeldialHotKey(SeldialHotKey hotKey) { seldialHotKey_ = std::move(hotKey); }

  /// Says in the window what it cannot know in a Wayland session. Call this before begin().
  void setOnWayland() { onWayland_ = true; }

  /// Sets the initial shortcut and delay. Call this before the window is shown.
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
  void trySeldialHotKey();
  void showAll();
  void showShortcut();
  void showState();
  [[nodiscard]] QString withWaylandNote(const QString& text) const;

  const platform::KeyboardPorts keyboard_;
  const Deliver deliver_;
  SeldialHotKey seldialHotKey_;
  std::shared_ptr<void> seldialTrial_;  ///< while Seldial's own hot key is tried out
  /// Started when that hot key was used. A callback on another thread may still hold it after the
  /// window is gone.
  const std::shared_ptr<QTimer> seldialUsed_{new QTimer,
                                             [](QTimer* timer) { timer->deleteLater(); }};
  KeycapField* field_;
  QLabel* shortcutText_;
  QPushButton* record_;
  QPushButton* clear_;
  QSpinBox* delay_;
  StatusPanel* panel_;
  QPushButton* accept_ = nullptr;
  KeyRepeats repeats_;
  bool onWayland_ = false;
  ShortcutTrial trial_;
  ShortcutState state_ = ShortcutState::kUnknown;
  std::optional<std::string> failure_;  ///< of the last delivery, until something changes
  QTimer litTimer_;                     ///< runs while the panel is lit
};

}  // namespace seldial
