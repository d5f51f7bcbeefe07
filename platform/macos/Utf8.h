#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace seldial::platform::macos {

/// `length` units of UTF-16 as UTF-8. Half a surrogate pair becomes U+FFFD.
std::string utf8FromUtf16(const std::uint16_t* units, std::size_t length);

}  // namespace seldial::platform::macos
