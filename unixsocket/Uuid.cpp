#include "unixsocket/Uuid.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>

#include "platform/System.h"

namespace seldial {
namespace {

using Bytes = std::array<unsigned char, 16>;

Bytes randomBytes() {
  Bytes bytes{};
  if (!platform::fillWithRandom(bytes.data(), bytes.size())) {
    std::perror("seldial: no random numbers");
    std::abort();
  }
  return bytes;
}

}  // namespace

std::string makeUuid() {
  constexpr auto kDigits = "0123456789ABCDEF";
  Bytes bytes = randomBytes();
  bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0FU) | 0x40U);  // version 4
  bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3FU) | 0x80U);  // variant 1
  std::string text;
  text.reserve(36);
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
    text += kDigits[bytes[i] >> 4U];
    text += kDigits[bytes[i] & 0x0FU];
  }
  return text;
}

}  // namespace seldial
