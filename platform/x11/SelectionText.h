// Reads the text of a selection that another client owns.
#pragma once

#include <optional>
#include <string>

#include "platform/x11/Connection.h"
#include "platform/x11/EventPump.h"

namespace seldial::platform::x11 {

/// The text in UTF-8, exactly as the owner gives it. Nothing when it gives none, more than 256 MiB
/// of it, or no answer within a second (for a text that comes in pieces: within a second after the
/// last piece).
std::optional<std::string> readSelectionText(Connection& connection, EventPump& pump,
                                             xcb_atom_t selection);

}  // namespace seldial::platform::x11
