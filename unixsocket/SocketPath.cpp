#include "unixsocket/SocketPath.h"

#include <algorithm>
#include <cstddef>

namespace seldial {
namespace {

/// The size of sun_path on macOS, with the NUL; Linux has 108 bytes.
constexpr std::size_t kPathCapacity = 104;

bool isStandardisedComponent(const std::string& component) {
  return !component.empty() && component != "." && component != "..";
}

/// Whether standardising `path` would leave it unchanged.
bool isStandardised(const std::string& path) {
  if (path[0] == '~') return false;
  if (path == "/") return true;
  std::size_t begin = path[0] == '/' ? 1 : 0;
  while (begin <= path.size()) {
    const std::size_t end = std::min(path.find('/', begin), path.size());
    if (!isStandardisedComponent(path.substr(begin, end - begin))) return false;
    begin = end + 1;
  }
  return true;
}

}  // namespace

bool isAcceptedSocketPath(const std::string& path) {
  if (path.empty()) return false;
  if (path == kDummySocketPath) return true;
  return path.find('/') != std::string::npos && isStandardised(path) && path.size() < kPathCapacity;
}

SocketAddress::SocketAddress(const std::string& path) {
  address_.sun_family = AF_UNIX;
  path.copy(address_.sun_path, kPathCapacity - 1);
}

bool SocketAddress::names(const std::string& path) const {
  return address_.sun_path == path;
}

const sockaddr* SocketAddress::get() const {
  return reinterpret_cast<const sockaddr*>(&address_);
}

socklen_t SocketAddress::size() {
  return offsetof(sockaddr_un, sun_path) + kPathCapacity;
}

}  // namespace seldial
