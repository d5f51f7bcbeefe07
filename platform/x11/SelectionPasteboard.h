// The general pasteboard: the CLIPBOARD selection or, after a copy in a terminal, what is selected
// there.
#pragma once

#include "platform/Pasteboard.h"
#include "platform/x11/ClipboardOwner.h"
#include "platform/x11/CopySource.h"

namespace seldial::platform::x11 {

/// Main thread only.
class SelectionPasteboard final : public Pasteboard {
 public:
  SelectionPasteboard(Connection& connection, EventPump& pump, ClipboardOwner& clipboard,
                      CopySource& source)
      : connection_(connection), pump_(pump), clipboard_(clipboard), source_(source) {}

  void clearContents() override;
  [[nodiscard]] std::optional<std::string> stringForType(const std::string& type) override;

 private:
  [[nodiscard]] xcb_window_t ownerOf(xcb_atom_t selection) const;

  Connection& connection_;
  EventPump& pump_;
  ClipboardOwner& clipboard_;
  CopySource& source_;
  bool stale_ = false;  ///< it could not be cleared: what it holds is from before
};

}  // namespace seldial::platform::x11
