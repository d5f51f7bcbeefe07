#include "unixsocket/Error.h"

#include <array>
#include <cerrno>
#include <utility>

#include "platform/System.h"

namespace seldial {
namespace {

/// In the order of the codes, from GDUnixSocketErrorBadSocket up.
constexpr std::array kMessages = {
    "Bad socket",
    "Failed to bind socket",
    "Failed to listen on socket",
    "Failed to accept connection, closing socket",
    "Failed to unlink socket",
    "Failed to connect to socket",
    "Failed to write to socket",
    "Failed to read from socket",
    "Failed to close socket",
    "Unknown client. It is either disconnected or never existed",
};

const char* messageForCode(std::int64_t code) {
  // Unsigned arithmetic: a code below the table wraps around and lands above it.
  const std::uint64_t index =
      static_cast<std::uint64_t>(code) - static_cast<std::uint64_t>(GDUnixSocketErrorBadSocket);
  return index < kMessages.size() ? kMessages[index] : "Unknown Error";
}

}  // namespace

Error Error::gduds_errorForCode(std::int64_t code, const std::string& info, int errorNumber) {
  std::string description = messageForCode(code);
  if (!info.empty()) description += ". " + info;
  return {GDUnixSocketErrorDomain, code, std::move(description), errorNumber};
}

bool Error::operator==(const Error& other) const {
  return domain == other.domain && code == other.code &&
         localizedDescription == other.localizedDescription;
}

Error errorOfFailedCall(std::int64_t code, std::int32_t descriptor) {
  const int number = errno;  // an allocation below may change it
  return Error::gduds_errorForCode(code, errorInfoForDescriptor(descriptor), number);
}

std::string errorInfoForDescriptor(std::int32_t descriptor) {
  const int number = errno;  // an allocation below may change it
  return "fd: " + std::to_string(descriptor) + ". errno: " + std::to_string(number) + ". " +
         platform::errorText(number);
}

}  // namespace seldial
