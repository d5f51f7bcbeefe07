#include "app/StandardOutput.h"

#include <cstdio>

namespace seldial {

void printLine(const std::string& line) {
  const std::string text = line + '\n';
  std::fwrite(text.data(), 1, text.size(), stdout);
}

}  // namespace seldial
