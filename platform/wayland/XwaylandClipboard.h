// The clipboard of the X11 programs in a Wayland session.
#pragma once

namespace seldial::platform::wayland {

/// Whether the focused window belongs to an X11 program that owns the clipboard. False for a
/// Wayland window. Starts Xwayland unless it runs, so call it only when an X11 program owns the
/// clipboard. Takes some milliseconds; at most a second if Xwayland does not answer.
[[nodiscard]] bool focusedX11ProgramOwnsClipboard();

}  // namespace seldial::platform::wayland
