#include "platform/System.h"

#include <mach-o/dyld.h>

#include <climits>
#include <cstdlib>
#include <cstring>

namespace seldial::platform {

bool fillWithRandom(void* bytes, std::size_t size) {
  arc4random_buf(bytes, size);  // OS X 10.11 has no getentropy()
  return true;
}

std::string errorText(int number) {
  char buffer[256] = "";
  (void)strerror_r(number, buffer, sizeof buffer);  // fills the buffer for an unknown number, too
  return buffer;
}

std::string executablePath() {
  char started[PATH_MAX];  // which may be a link
  std::uint32_t size = sizeof started;
  if (_NSGetExecutablePath(started, &size) != 0) return "";
  char path[PATH_MAX];
  return realpath(started, path) != nullptr ? path : "";
}

bool endWithParent(pid_t /*parent*/) {
  return true;
}

const char* uriOpener() {
  return "/usr/bin/open";
}

}  // namespace seldial::platform
