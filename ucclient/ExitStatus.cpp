#include "ucclient/ExitStatus.h"

#include <sys/wait.h>

#include <cstring>

namespace seldial {

std::string describedExitStatus(int status) {
  if (WIFEXITED(status)) return "ended with status " + std::to_string(WEXITSTATUS(status));
  const int signal = WTERMSIG(status);
  return "was killed by signal " + std::to_string(signal) + " (" + strsignal(signal) + ")";
}

}  // namespace seldial
