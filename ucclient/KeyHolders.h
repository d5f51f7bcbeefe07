#pragma once

#include <string>
#include <vector>

namespace seldial {

/// The user's running programs that are known to take hot keys of the desktop, each with where its
/// hot keys are set, such as "openbox (rc.xml)". A display server does not tell who has one. Empty
/// where the system has no /proc.
[[nodiscard]] std::vector<std::string> likelyKeyHolders();

}  // namespace seldial
