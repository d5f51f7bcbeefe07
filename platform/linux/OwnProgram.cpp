#include "platform/OwnProgram.h"

#include <climits>
#include <cstdlib>

namespace seldial::platform {

std::string ownProgram() {
  char path[PATH_MAX];
  return realpath("/proc/self/exe", path) != nullptr ? path : "";
}

}  // namespace seldial::platform
