// The copy on X11: the CLIPBOARD selection and the copy keystroke. This header needs no XCB.
#pragma once

#include <memory>

#include "platform/Clipboard.h"

namespace seldial::platform {
class HotKeyEvents;
}

namespace seldial::platform::x11 {

class Session;

/// The clipboard of the session's display. It reserves the copy keystroke. When it is destroyed,
/// every key that it still holds down is released. Main thread only.
std::shared_ptr<Clipboard> makeClipboard(const std::shared_ptr<Session>& session);

/// From now on `hotKeys`, those of a session, refuse the copy keystroke: the grab would take it
/// from the application that is to copy. For a program that only tries hot keys out;
/// makeClipboard() does it for one that copies.
void reserveCopyKeystroke(HotKeyEvents& hotKeys);

}  // namespace seldial::platform::x11
