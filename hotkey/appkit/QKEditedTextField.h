#pragma once

#import <AppKit/AppKit.h>

#include <memory>
#include <string>

#include "hotkey/QKHotKeyEditing.h"

@class QKHotKeyTextField;

namespace seldial {

/// A QKHotKeyTextField and the text view that edits it, as the editing sees them. The field is held
/// weakly: one that is gone takes nothing and gives nothing. The text view owns this object.
class QKEditedTextField final : public QKHotKeyEditedField {
 public:
  QKEditedTextField(QKHotKeyTextField* field, NSTextView* editor)
      : field_(field), editor_(editor) {}

  [[nodiscard]] std::shared_ptr<QKHotKey> hotKey() const override;
  void setHotKey(const std::shared_ptr<QKHotKey>& hotKey) override;
  void setEditorString(const std::string& displayString) override;
  void sendAction() override;
  void resignFocus() override;

 private:
  __weak QKHotKeyTextField* const field_;
  __unsafe_unretained NSTextView* const editor_;  // text views know weak references from 10.12 on
};

}  // namespace seldial
