#include "ucclient/FindSeldial.h"

#include <sys/stat.h>
#include <unistd.h>

#include "platform/OwnProgram.h"

namespace seldial {
namespace {

/// The program itself, or as it lies in the bundle that it is on some systems.
constexpr const char* kPrograms[] = {"/seldial", "/Seldial.app/Contents/MacOS/Seldial"};

bool isProgram(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         access(path.c_str(), X_OK) == 0;
}

}  // namespace

std::string ownDirectory() {
  const std::string file = platform::ownProgram();
  return file.substr(0, file.rfind('/'));
}

std::string findSeldial(const std::string& directory) {
  if (directory.empty()) return "seldial";
  for (const std::string& place : {directory, directory + "/../app", directory + "/.."}) {
    for (const char* const program : kPrograms) {
      if (isProgram(place + program)) return place + program;
    }
  }
  return "seldial";
}

}  // namespace seldial
