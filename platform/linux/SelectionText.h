// Converts the text of a selection to valid UTF-8.
#pragma once

#include <string>

namespace seldial::platform::linux_port {

std::string utf8FromLatin1(const std::string& latin1);

/// Removes a NUL byte at the end: some owners, such as AbiWord, include the terminator of a C
/// string.
std::string withoutTerminator(std::string text);

/// Repairs invalid UTF-8; valid text is unchanged. A character above U+FFFF that was encoded as two
/// surrogates, as by Tk 8.6, becomes that character. Anything else that is invalid becomes U+FFFD:
/// one for a lone surrogate, one for an incomplete character, and one for each byte that begins no
/// character.
std::string repairedUtf8(std::string text);

}  // namespace seldial::platform::linux_port
