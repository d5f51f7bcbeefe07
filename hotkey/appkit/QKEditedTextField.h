#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <string>

#include "hotkey/QKHotKeyEditing.h"

@class QKHotKeyTextField;

namespace seldial {

/// A QKHotKeyTextField and the text view that edits it, as the editing sees them. Both are held
/// weakly; what is gone takes nothing and gives nothing.
class QKEditedTextField final : public QKHotKeyEditedField {
 public:
  QKEditedTextField(QKHotKeyTextField *field, NSTextView *editor)
      : field_(field), editor_(editor) {}

  [[nodiscard]] std::shared_ptr<QKHotKey> hotKey() const override;
  void setHotKey(const std::shared_ptr<QKHotKey> &hotKey) override;
  void setEditorString(const std::string &displayString) override;
  void sendAction() override;
  void resignFocus() override;

 private:
  __weak QKHotKeyTextField *const field_;
  __weak NSTextView *const editor_;
};

}  // namespace seldial
