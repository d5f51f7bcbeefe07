#pragma once

#include <string_view>

namespace seldial {

/// Whether `bytes` are valid UTF-8: no overlong form, no surrogate, nothing above U+10FFFF and no
/// incomplete character. Empty is valid. Any thread.
[[nodiscard]] bool isValidUTF8(std::string_view bytes);

}  // namespace seldial
