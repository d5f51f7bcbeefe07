#include "ucclient/Paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/System.h"

namespace seldial {
namespace {

/// The program itself, or the one in its bundle.
constexpr const char* kPrograms[] = {"/seldial", "/Seldial.app/Contents/MacOS/Seldial"};

bool isProgram(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
         access(path.c_str(), X_OK) == 0;
}

constexpr const char* kTemplate = "/seldial-uc-XXXXXX";

/// Bytes reserved for a slash and the name of a socket.
constexpr std::size_t kMaxNameLength = 16;

/// `path` without symbolic links, ".." and double slashes, as the socket library requires. Empty if
/// it does not exist.
std::string realPath(const std::string& path) {
  char* const resolved = realpath(path.c_str(), nullptr);
  std::string result = resolved != nullptr ? resolved : "";
  std::free(resolved);
  return result;
}

}  // namespace

std::string executableDirectory() {
  const std::string file = platform::executablePath();
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

std::string findProgram(const std::string& name, const std::string& directory) {
  if (directory.empty()) return name;
  for (const std::string& place : {directory, directory + "/../shortcut"}) {
    std::string program = place;
    program.append("/").append(name);
    if (isProgram(program)) return program;
  }
  return name;
}

std::unique_ptr<PrivateDirectory> PrivateDirectory::createIn(
    const std::vector<std::string>& parents) {
  for (const std::string& parent : parents) {
    const std::string real = realPath(parent);
    std::string path = (real == "/" ? "" : real) + kTemplate;
    if (real.empty() || path.size() + kMaxNameLength > kMaxPathLength) continue;
    if (mkdtemp(path.data()) == nullptr) continue;  // only its owner can access it, from the start
    return std::unique_ptr<PrivateDirectory>(new PrivateDirectory(path));
  }
  return nullptr;
}

std::vector<std::string> PrivateDirectory::defaultParents() {
  std::vector<std::string> parents;
  for (const char* const name : {"XDG_RUNTIME_DIR", "TMPDIR"}) {
    const char* const value = std::getenv(name);
    if (value != nullptr && value[0] == '/') parents.emplace_back(value);
  }
  parents.emplace_back("/tmp");
  return parents;
}

PrivateDirectory::~PrivateDirectory() {
  for (const std::string& file : files_) unlink(file.c_str());
  rmdir(path_.c_str());
}

std::string PrivateDirectory::file(const std::string& name) {
  files_.push_back(path_ + "/" + name);
  return files_.back();
}

}  // namespace seldial
