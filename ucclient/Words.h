#pragma once

#include <string>
#include <vector>

namespace seldial {

/// Translates a text of a notification into the language of the session, which LANGUAGE, LC_ALL,
/// LC_MESSAGES or LANG sets, as for gettext. English if there is no translation. "%1", "%2" and so
/// on are replaced by the values. Printed output is not translated, because scripts read it. Any
/// thread.
[[nodiscard]] std::string translated(const std::string& english,
                                     const std::vector<std::string>& values = {});

}  // namespace seldial
