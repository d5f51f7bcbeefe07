#pragma once

#include <string>
#include <vector>

namespace seldial {

/// A text of a notification in the language of the session: that of LANGUAGE, LC_ALL, LC_MESSAGES
/// or LANG, as programs with gettext choose it. English where there is no translation. "%1", "%2"
/// and so on stand for the values. What is printed is not translated, because scripts read it. Any
/// thread.
[[nodiscard]] std::string translated(const std::string& english,
                                     const std::vector<std::string>& values = {});

}  // namespace seldial
