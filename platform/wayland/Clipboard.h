// The copy on Wayland: the clipboard by data control, the copy keystroke by what the compositor
// lets us type with.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/Clipboard.h"
#include "platform/wayland/CopyKeys.h"
#include "platform/wayland/DataControl.h"
#include "platform/wayland/Terminals.h"

namespace seldial::platform::wayland {

/// Names of the program that owns the focused window: the application id, or the window class on
/// Xwayland. None when no window has the focus.
using FocusedProgram = std::function<std::vector<std::string>()>;

/// Types nothing into a terminal but what it copies by and does not hand to the program inside.
/// A terminal that cannot be made to copy like that copies nothing. Main thread only.
class WaylandClipboard final : public Clipboard {
 public:
  WaylandClipboard(DataControl& data, CopyKeys& keys, FocusedProgram focusedProgram)
      : data_(data), keys_(keys), focusedProgram_(std::move(focusedProgram)) {}

  void clear() override;
  [[nodiscard]] bool copySelection() override;
  [[nodiscard]] std::optional<std::string> text() override;

 private:
  DataControl& data_;
  CopyKeys& keys_;
  const FocusedProgram focusedProgram_;
  std::vector<std::string> names_;               ///< of the program that copied last
  TerminalKind terminal_ = TerminalKind::kNone;  ///< its kind
};

}  // namespace seldial::platform::wayland
