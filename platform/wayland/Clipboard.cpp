#include "platform/wayland/Clipboard.h"

#include <utility>

#include "platform/x11/copy/Applications.h"

namespace seldial::platform::wayland {

void WaylandClipboard::clear() {
  data_.takeEmpty();
}

bool WaylandClipboard::copySelection() {
  terminal_ = TerminalKind::kNone;
  names_ = focusedProgram_();
  // Whether Emacs copied what it shows as selected is not known here.
  if (x11::isLeftAlone(names_) || x11::takesPrimaryAfterCopying(names_)) return true;
  for (const auto& name : names_) {
    if (terminal_ == TerminalKind::kNone) terminal_ = terminalKind(name);
  }
  const bool byCopyKey = terminal_ == TerminalKind::kOther;
  return keys_.type(byCopyKey ? Chord::kCopyKey : Chord::kControlInsert);
}

std::optional<std::string> WaylandClipboard::text() {
  auto text = data_.copiedText();
  // Some terminals copy an empty text when nothing is selected.
  if (terminal_ != TerminalKind::kNone && text && text->empty()) return {};
  if (text && x11::mayBeCurrentLine(names_, *text)) return {};
  return text;
}

}  // namespace seldial::platform::wayland
