#include "platform/linux/SelectionText.h"

#include <cstdint>
#include <string_view>

namespace seldial::platform::linux_port {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

/// The first character of a text, decoded.
struct Piece {
  std::size_t length = 0;  ///< in bytes; at least 1
  std::uint32_t code = 0;
  bool complete = false;  ///< a character or a surrogate; otherwise `code` is meaningless
};

bool isSurrogate(const Piece& piece) {
  return piece.complete && piece.code >= 0xD800 && piece.code <= 0xDFFF;
}

/// The length of a character that begins with this byte; 0 if none does.
std::size_t lengthFor(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead <= 0xDF) return 2;
  if (lead >= 0xE0 && lead <= 0xEF) return 3;
  return lead >= 0xF0 && lead <= 0xF4 ? 4 : 0;
}

/// Whether the first two bytes, decoded, begin neither an overlong form nor a code above U+10FFFF.
bool canBegin(std::uint32_t code, std::size_t length) {
  if (length == 3) return code >= 0x20;
  return length != 4 || (code >= 0x10 && code <= 0x10F);
}

/// `text` is not empty.
Piece firstPiece(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lengthFor(lead);
  if (length == 0) return {1};
  if (length == 1) return {1, lead, true};
  std::uint32_t code = lead & 0xFFU >> (length + 1);
  for (std::size_t read = 1; read < length; ++read) {
    const auto byte = read < text.size() ? static_cast<unsigned char>(text[read]) : 0U;
    if ((byte & 0xC0U) != 0x80) return {read};
    code = code << 6U | (byte & 0x3FU);
    if (read == 1 && !canBegin(code, length)) return {read};
  }
  return {length, code, true};
}

/// The length of the valid prefix.
std::size_t validLength(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size()) {
    const auto piece = firstPiece(text.substr(length));
    if (!piece.complete || isSurrogate(piece)) break;
    length += piece.length;
  }
  return length;
}

/// `code` is above U+07FF.
void append(std::string& text, std::uint32_t code) {
  const auto put = [&](std::uint32_t byte) { text += static_cast<char>(byte); };
  if (code < 0x10000) {
    put(0xE0U | code >> 12U);
  } else {
    put(0xF0U | code >> 18U);
    put(0x80U | (code >> 12U & 0x3FU));
  }
  put(0x80U | (code >> 6U & 0x3FU));
  put(0x80U | (code & 0x3FU));
}

/// Removes the invalid bytes at the beginning of `text` and returns the character that replaces
/// them.
std::uint32_t takeInvalid(std::string_view& text) {
  const auto first = firstPiece(text);
  text.remove_prefix(first.length);
  if (!isSurrogate(first) || first.code >= 0xDC00 || text.empty()) return kReplacement;
  const auto second = firstPiece(text);
  if (!isSurrogate(second) || second.code < 0xDC00) return kReplacement;
  text.remove_prefix(second.length);
  return 0x10000U + ((first.code - 0xD800U) << 10U) + (second.code - 0xDC00U);
}

}  // namespace

std::string utf8FromLatin1(const std::string& latin1) {
  std::string utf8;
  utf8.reserve(latin1.size());
  for (const char character : latin1) {
    const auto code = static_cast<unsigned char>(character);
    if (code < 0x80) {
      utf8 += character;
    } else {
      utf8 += static_cast<char>(0xC0 | code >> 6);
      utf8 += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return utf8;
}

std::string withoutTerminator(std::string text) {
  if (text.ends_with('\0')) text.pop_back();
  return text;
}

std::string repairedUtf8(std::string text) {
  std::size_t valid = validLength(text);
  if (valid == text.size()) return text;
  std::string repaired;
  std::string_view rest = text;
  for (;;) {
    repaired += rest.substr(0, valid);
    rest.remove_prefix(valid);
    if (rest.empty()) return repaired;
    append(repaired, takeInvalid(rest));
    valid = validLength(rest);
  }
}

}  // namespace seldial::platform::linux_port
