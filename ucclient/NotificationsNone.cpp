// Stubs for systems without a session bus, such as macOS.
#include <utility>

#include "ucclient/Notifications.h"

namespace seldial {

void showNotification(const std::string& /*summary*/, const std::string& /*body*/) {}

void showNotificationAndWait(const std::string& /*summary*/, const std::string& /*body*/) {}

void offerUndo(const std::string& /*summary*/, std::chrono::milliseconds /*time*/,
               std::function<void(UndoOffer)> ended) {
  std::move(ended)(UndoOffer::kNotShown);
}

}  // namespace seldial
