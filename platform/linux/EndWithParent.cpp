#include "platform/EndWithParent.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace seldial::platform {

bool endWithParent(pid_t parent) {
  if (prctl(PR_SET_PDEATHSIG, SIGTERM) != 0) return false;
  if (getppid() == parent) return true;
  errno = ESRCH;  // it died before the request, which therefore will never be granted
  return false;
}

}  // namespace seldial::platform
