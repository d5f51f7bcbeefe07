// Desktop notifications, over the session bus, and their texts in the user's language. All texts
// are plain text.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace seldial {

/// Shows a notification and returns at once. Has no effect without a session bus or on a desktop
/// without notifications.
void showNotification(const std::string& summary, const std::string& body);

/// Like showNotification(), but waits until it is shown, for a few seconds at most. For a program
/// that is about to end.
void showNotificationAndWait(const std::string& summary, const std::string& body);

/// The result of an offer to undo something.
enum class UndoOffer {
  kUndone,    ///< the user pressed "Undo" or dismissed the notification
  kTimeOver,  ///< neither happened in time
  kNotShown,  ///< this desktop has no notifications with buttons
};

/// Shows a notification with the button "Undo" for `time` and returns at once. `ended` is called
/// once, on a separate thread.
void offerUndo(const std::string& summary, std::chrono::milliseconds time,
               std::function<void(UndoOffer)> ended);

/// Translates a text of a notification into the language of the session, which LANGUAGE, LC_ALL,
/// LC_MESSAGES or LANG sets, as for gettext. English if there is no translation. "%1", "%2" and so
/// on are replaced by the values. Printed output is not translated, because scripts read it. Any
/// thread.
[[nodiscard]] std::string translated(const std::string& english,
                                     const std::vector<std::string>& values = {});

}  // namespace seldial
