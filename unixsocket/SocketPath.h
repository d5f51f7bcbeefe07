// The file-system path of a socket: which paths are accepted, and the address of a path.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <string>

namespace seldial {

/// The path of accepted connections, which have no path.
inline constexpr const char* kDummySocketPath = "(dummy)";

/// Whether a socket object can be made for `path`: it is kDummySocketPath, or it contains a "/", is
/// standardised (no component "." or "..", no doubled or trailing separator, no leading "~") and
/// is at most 103 bytes long.
bool isAcceptedSocketPath(const std::string& path);

/// The address of a path: 106 bytes, zero except for the family and the path.
class SocketAddress {
 public:
  /// Copies at most 103 bytes of `path`.
  explicit SocketAddress(const std::string& path);

  /// Whether the address names exactly `path`: it was not truncated, and it contains no NUL byte.
  [[nodiscard]] bool names(const std::string& path) const;

  [[nodiscard]] const sockaddr* get() const;
  [[nodiscard]] static socklen_t size();

 private:
  sockaddr_un address_{};
};

}  // namespace seldial
