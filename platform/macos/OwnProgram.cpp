#include "platform/OwnProgram.h"

#include <mach-o/dyld.h>

#include <climits>
#include <cstdlib>

namespace seldial::platform {

std::string ownProgram() {
  char started[PATH_MAX];  // as it was started, links and all
  std::uint32_t size = sizeof started;
  if (_NSGetExecutablePath(started, &size) != 0) return "";
  char path[PATH_MAX];
  return realpath(started, path) != nullptr ? path : "";
}

}  // namespace seldial::platform
