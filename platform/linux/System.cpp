#include "platform/System.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>

namespace seldial::platform {

bool fillWithRandom(void* bytes, std::size_t size) {
  return getentropy(bytes, size) == 0;
}

std::string errorText(int number) {
  char buffer[256];
  return strerror_r(number, buffer, sizeof buffer);  // GNU's, which may return a constant text
}

std::string executablePath() {
  char path[PATH_MAX];
  return realpath("/proc/self/exe", path) != nullptr ? path : "";
}

bool endWithParent(pid_t parent) {
  if (prctl(PR_SET_PDEATHSIG, SIGTERM) != 0) return false;
  if (getppid() == parent) return true;
  errno = ESRCH;  // it ended before the request, so no signal will come
  return false;
}

const char* uriOpener() {
  return "xdg-open";
}

}  // namespace seldial::platform
