// Notifications on the user's desktop, over the session bus. The texts are plain.
#pragma once

#include <chrono>
#include <functional>
#include <string>

namespace seldial {

/// Shows a notification and returns at once. Nothing is shown where there is no session bus or no
/// desktop that shows notifications.
void showNotification(const std::string& summary, const std::string& body);

/// Waits until it is shown, a few seconds at most: for a program that is about to end.
void showNotificationAndWait(const std::string& summary, const std::string& body);

/// What became of an offer to undo something.
enum class UndoOffer {
  kUndone,    ///< the user pressed "Undo" or dismissed the notification
  kTimeOver,  ///< nothing of that happened in time
  kNotShown,  ///< this desktop has no notifications with buttons
};

/// Shows a notification with the button "Undo" for that time and returns at once. `ended` is called
/// once, on a thread of its own.
void offerUndo(const std::string& summary, std::chrono::milliseconds time,
               std::function<void(UndoOffer)> ended);

}  // namespace seldial
