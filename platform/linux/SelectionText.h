// The text of a selection as UTF-8, whatever its owner sent.
#pragma once

#include <string>

namespace seldial::platform::linux_port {

std::string utf8FromLatin1(const std::string& latin1);

/// Removes a zero byte at the end: some owners, as AbiWord, count the end of a C string as text.
std::string withoutTerminator(std::string text);

/// Makes valid UTF-8 of what an owner calls UTF-8; valid text stays as it is. A character above
/// U+FFFF that was encoded as two surrogates, as Tk 8.6 does, becomes that character. Anything else
/// that is invalid becomes U+FFFD: one for a lone surrogate, for an incomplete character, and for
/// each byte that begins none.
std::string repairedUtf8(std::string text);

}  // namespace seldial::platform::linux_port
