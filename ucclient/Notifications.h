#pragma once

#include <string>

namespace seldial {

/// Shows a notification on the user's desktop, by the session bus. Returns at once; nothing is
/// shown where there is no session bus or no desktop that shows notifications. The texts are plain.
void showNotification(const std::string& summary, const std::string& body);

}  // namespace seldial
