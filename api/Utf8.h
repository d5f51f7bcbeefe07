#pragma once

#include <string_view>

namespace seldial {

/// Whether `bytes` are well-formed UTF-8: no overlong form, no surrogate, nothing above U+10FFFF
/// and no character cut short. Empty is valid. Any thread.
[[nodiscard]] bool isValidUTF8(std::string_view bytes);

}  // namespace seldial
