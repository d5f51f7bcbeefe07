// The X11 desktop. This header does not include XCB.
#pragma once

#include <cstdint>
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
/// the server goes away. Null if there is no server or it lacks a required extension; then one line
/// on standard error says so, unless DISPLAY is not set. If the server is Xwayland, one line says
/// in which windows the hot key works. Main thread, like everything that a session does.
std::shared_ptr<Session> connect(std::shared_ptr<linux_port::MainLoop> loop,
                                 std::function<void()> connectionLost);

std::shared_ptr<HotKeyEvents> hotKeyEvents(const std::shared_ptr<Session>& session);
std::shared_ptr<RecordingKeyboard> recordingKeyboard(const std::shared_ptr<Session>& session);

/// Types a hot key, as if the user pressed and released its keys: a key code and ModifierFlag bits.
/// If the keyboard lacks one of the keys, nothing is typed and the result is false. `hotKeys` must
/// belong to a session.
[[nodiscard]] bool typeHotKey(HotKeyEvents& hotKeys, std::uint16_t keyCode,
                              std::uint64_t modifierFlags);

/// Whether an X event says that a window has lost the keyboard to a grab, or regained it, without a
/// change of focus. A pressed hot key is such a grab.
[[nodiscard]] bool isFocusChangeOfGrab(const void* event);

/// Whether an X event says that this window now has the focus. A toolkit may call a window active
/// before that, when the pointer enters it.
[[nodiscard]] bool isFocusIn(std::uint32_t window, const void* event);

// The copy, which programs of the hot key library do without; see copy/Clipboard.cpp.

/// Creates the clipboard of the session's display. It reserves the copy keystroke. Its destructor
/// releases every key that it still holds down. Main thread only.
std::shared_ptr<Clipboard> makeClipboard(const std::shared_ptr<Session>& session);

/// Makes `hotKeys`, which must belong to a session, refuse the copy keystroke: the grab would take
/// it from the application that is to copy. For programs that only try out hot keys;
/// makeClipboard() does this itself.
void reserveCopyKeystroke(HotKeyEvents& hotKeys);

/// Whether the program with the focus on the server that DISPLAY names owns the clipboard. False if
/// no window of that server has the focus, for example because a Wayland window has it. Needs no
/// session. In a Wayland session this starts Xwayland if it is not running, so call it only when an
/// X11 program owns the clipboard. Takes some milliseconds; at most a second if the server does not
/// answer. If the server cannot be asked, one line on standard error says so.
[[nodiscard]] bool focusedProgramOwnsClipboard();

}  // namespace seldial::platform::x11
