#include "ucclient/FindSeldial.h"

#include <sys/stat.h>
#include <unistd.h>

#include <climits>
#include <cstdlib>

namespace seldial {
namespace {

bool isProgram(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::string ownDirectory() {
  char path[PATH_MAX];
  if (realpath("/proc/self/exe", path) == nullptr) return "";
  const std::string file = path;
  return file.substr(0, file.rfind('/'));
}

std::string findSeldial(const std::string& directory) {
  for (const char* const place : {"/seldial", "/../app/seldial"}) {
    if (!directory.empty() && isProgram(directory + place)) return directory + place;
  }
  return "seldial";
}

}  // namespace seldial
