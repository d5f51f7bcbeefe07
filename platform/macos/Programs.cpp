#include "platform/Programs.h"

#include <mach-o/dyld.h>

#include <climits>
#include <cstdlib>

namespace seldial::platform {

std::string executablePath() {
  char started[PATH_MAX];  // may contain links
  std::uint32_t size = sizeof started;
  if (_NSGetExecutablePath(started, &size) != 0) return "";
  char path[PATH_MAX];
  return realpath(started, path) != nullptr ? path : "";
}

bool endWithParent(pid_t /*parent*/) {
  return true;
}

}  // namespace seldial::platform
