#include "api/FatalError.h"

#include <cstdio>
#include <cstdlib>

namespace seldial {

void fatalError(const std::string& message) {
  const std::string line = message + "\n";
  (void)std::fputs(line.c_str(), stderr);
  std::abort();
}

}  // namespace seldial
