// The X11 desktop, for programs that choose it. This header needs no XCB.
#pragma once

#include <functional>
#include <memory>

#include "platform/Clipboard.h"
#include "platform/linux/MainLoop.h"

namespace seldial::platform {
class HotKeyEvents;
class RecordingKeyboard;
}  // namespace seldial::platform

namespace seldial::platform::x11 {

/// A connection to an X server, served by a main loop. The ports below keep it alive.
class Session;

/// Connects to the server that DISPLAY names. `connectionLost` is called once, from the loop, when
/// the server goes away. Null when there is no server or it lacks an extension that is needed; then
/// one line on standard error says so, except where DISPLAY is not set. Where the server is
/// Xwayland, one line says which windows are reached. Main thread, as everything that a session
/// does.
std::shared_ptr<Session> connect(std::shared_ptr<linux_port::MainLoop> loop,
                                 std::function<void()> connectionLost);

std::shared_ptr<HotKeyEvents> hotKeyEvents(const std::shared_ptr<Session>& session);
std::shared_ptr<RecordingKeyboard> recordingKeyboard(const std::shared_ptr<Session>& session);

/// Types a hot key, as if the user pressed and released its keys: a key code and ModifierFlag bits.
/// Nothing is typed, and the result is false, where the keyboard lacks one of the keys. `hotKeys`
/// are those of a session.
[[nodiscard]] bool typeHotKey(HotKeyEvents& hotKeys, std::uint16_t keyCode,
                              std::uint64_t modifierFlags);

/// Whether an event of an X connection says that a window has lost, or regained, the keyboard to a
/// grab while the focus stays where it is. A hot key that is pressed is such a grab.
[[nodiscard]] bool isFocusChangeOfGrab(const void* event);

// The copy, which programs of the hot key library do without; see copy/Clipboard.cpp.

/// The clipboard of the session's display. It reserves the copy keystroke. When it is destroyed,
/// every key that it still holds down is released. Main thread only.
std::shared_ptr<Clipboard> makeClipboard(const std::shared_ptr<Session>& session);

/// From now on `hotKeys`, those of a session, refuse the copy keystroke: the grab would take it
/// from the application that is to copy. For a program that only tries hot keys out;
/// makeClipboard() does it for one that copies.
void reserveCopyKeystroke(HotKeyEvents& hotKeys);

}  // namespace seldial::platform::x11
