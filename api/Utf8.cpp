#include <cstdint>
#include <cstring>

#include "api/JSON.h"

namespace seldial {
namespace {

// Length of the ASCII prefix. Checks eight bytes at a time, because most texts are ASCII.
std::size_t asciiPrefix(std::string_view bytes) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  std::size_t count = 0;
  for (std::uint64_t word = 0; bytes.size() - count >= sizeof word; count += sizeof word) {
    std::memcpy(&word, bytes.data() + count, sizeof word);
    if ((word & kHighBits) != 0) break;
  }
  while (count < bytes.size() && (static_cast<unsigned char>(bytes[count]) & 0x80U) == 0) ++count;
  return count;
}

struct Sequence {
  std::size_t length;   // in bytes; 0 if the byte does not begin a character
  unsigned char least;  // bounds of the second byte, which exclude overlong forms, surrogates and
  unsigned char most;   // everything above U+10FFFF
};

Sequence sequenceFor(unsigned char lead) {
  if (lead >= 0xC2 && lead <= 0xDF) return {2, 0x80, 0xBF};
  if (lead == 0xE0) return {3, 0xA0, 0xBF};
  if (lead == 0xED) return {3, 0x80, 0x9F};
  if (lead >= 0xE1 && lead <= 0xEF) return {3, 0x80, 0xBF};
  if (lead == 0xF0) return {4, 0x90, 0xBF};
  if (lead >= 0xF1 && lead <= 0xF3) return {4, 0x80, 0xBF};
  if (lead == 0xF4) return {4, 0x80, 0x8F};
  return {0, 0, 0};
}

// Length in bytes of the character outside ASCII that `bytes` begin with; 0 if it is not valid.
std::size_t characterLength(std::string_view bytes) {
  const auto byteAt = [bytes](std::size_t index) {
    return static_cast<unsigned char>(bytes[index]);
  };
  const Sequence sequence = sequenceFor(byteAt(0));
  if (sequence.length == 0 || bytes.size() < sequence.length) return 0;
  if (byteAt(1) < sequence.least || byteAt(1) > sequence.most) return 0;
  for (std::size_t index = 2; index < sequence.length; ++index) {
    if ((byteAt(index) & 0xC0U) != 0x80) return 0;
  }
  return sequence.length;
}

}  // namespace

bool isValidUTF8(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t ascii = asciiPrefix(bytes);
    bytes.remove_prefix(ascii);
    // In a run of non-ASCII characters, checking for eight ASCII bytes after each would be slow.
    while (!bytes.empty() && (static_cast<unsigned char>(bytes[0]) & 0x80U) != 0) {
      const std::size_t length = characterLength(bytes);
      if (length == 0) return false;
      bytes.remove_prefix(length);
    }
  }
  return true;
}

}  // namespace seldial
