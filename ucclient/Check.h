#pragma once

#include "ucclient/Options.h"

namespace seldial {

/// Looks at everything that dialling with these options needs, and prints what it finds: the
/// session, the programs, whether the hot key can be had and a selected text copied. Starts a
/// seldial for a moment, and a window. Returns whether all of it is as it should be. Main thread
/// only.
[[nodiscard]] bool checkEverything(const Options& options);

}  // namespace seldial
