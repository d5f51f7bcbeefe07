#pragma once

#include <ctime>
#include <string>

namespace seldial {

/// The JSON text of a message that carries the time `now` as "datetime": `kind` ("response" or
/// "event") with its name, and the message. When the message cannot be serialised, the text is
/// `{"datetime":"` with the same time and `fallback` after it.
[[nodiscard]] std::string stampedMessage(std::time_t now, const char* kind, const char* name,
                                         const std::string& message, const char* fallback);

}  // namespace seldial
