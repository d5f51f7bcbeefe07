#include "ucclient/Printable.h"

#include <cstdio>

namespace seldial {
namespace {

void appendEscape(std::string& result, unsigned character) {
  char escape[8];
  std::snprintf(escape, sizeof escape, "\\u%04x", character);
  result += escape;
}

}  // namespace

std::string printable(const std::string& text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    const auto following = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : 0);
    // U+0080 to U+009F are two bytes of UTF-8, C2 80 to C2 9F.
    const bool c1 = byte == 0xC2 && following >= 0x80 && following <= 0x9F;
    if (c1) {
      appendEscape(result, following);
      ++i;
    } else if (byte < 0x20 || byte == 0x7F) {
      appendEscape(result, byte);
    } else {
      result += text[i];
    }
  }
  return result;
}

}  // namespace seldial
