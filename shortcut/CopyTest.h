#pragma once

#include <QCoreApplication>
#include <QDialog>
#include <functional>
#include <string>

namespace seldial {

/// A window with a selected text, in which `seldial-uc check` tries out whether Seldial can copy.
/// Main thread only.
class CopyTestWindow : public QDialog {
  Q_DECLARE_TR_FUNCTIONS(CopyTestWindow)

 public:
  /// `ready` is called once, from the event loop, when what is typed reaches the window.
  CopyTestWindow(const std::string& text, std::function<void()> ready);

 protected:
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  std::function<void()> ready_;
};

}  // namespace seldial
