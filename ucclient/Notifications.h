// Desktop notifications, over the session bus. All texts are plain text.
#pragma once

#include <chrono>
#include <functional>
#include <string>

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

}  // namespace seldial
