#pragma once

#include <ctime>
#include <string>

namespace seldial {

/// The current local time as messages carry it, "2017-02-06T14:10:32+0100". The time zone is asked
/// anew each time, since it may change while the program runs. Any thread.
[[nodiscard]] std::string messageTimestamp();

/// A given moment in that form.
[[nodiscard]] std::string messageTimestamp(std::time_t date);

}  // namespace seldial
