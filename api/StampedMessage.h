#pragma once

#include <string>

namespace seldial {

/// The JSON text of a message that carries the current time as "datetime": `kind` ("response" or
/// "event") with its name, and the message. When the message cannot be serialised, the text is
/// `{"datetime":"` with the same time and `fallback` after it.
[[nodiscard]] std::string stampedMessage(const char* kind, const char* name,
                                         const std::string& message, const char* fallback);

}  // namespace seldial
