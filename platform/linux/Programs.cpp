#include "platform/Programs.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>

namespace seldial::platform {

std::string executablePath() {
  char path[PATH_MAX];
  return realpath("/proc/self/exe", path) != nullptr ? path : "";
}

bool endWithParent(pid_t parent) {
  if (prctl(PR_SET_PDEATHSIG, SIGTERM) != 0) return false;
  if (getppid() == parent) return true;
  errno = ESRCH;  // the parent ended before the request, so no signal would come
  return false;
}

}  // namespace seldial::platform
