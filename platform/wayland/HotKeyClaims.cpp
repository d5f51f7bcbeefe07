#include "platform/wayland/HotKeyClaims.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <system_error>
#include <utility>

namespace seldial::platform::wayland {

HotKeyClaim::HotKeyClaim(HotKeyClaim&& other) noexcept
    : path_(std::move(other.path_)), file_(std::exchange(other.file_, -1)) {}

HotKeyClaim& HotKeyClaim::operator=(HotKeyClaim&& other) noexcept {
  std::swap(path_, other.path_);
  std::swap(file_, other.file_);
  return *this;
}

HotKeyClaim::~HotKeyClaim() {
  if (file_ == -1) return;
  // Before the lock is released: a process that has opened the file then notices its removal.
  unlink(path_.c_str());
  close(file_);
}

std::optional<HotKeyClaim> HotKeyClaims::claim(const std::string& combination) {
  mkdir(directory_.c_str(), S_IRWXU);
  const std::string path = directory_ + "/" + prefix_ + combination;
  for (;;) {
    const int file =
        open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (file == -1) return HotKeyClaim(path, -1);  // there is no such directory to coordinate in
    if (flock(file, LOCK_EX | LOCK_NB) == -1) {
      close(file);
      return {};
    }
    struct stat opened {};
    if (fstat(file, &opened) == 0 && opened.st_nlink > 0) return HotKeyClaim(path, file);
    close(file);  // the holder has removed it meanwhile
  }
}

std::vector<std::string> HotKeyClaims::takeAbandoned() {
  std::vector<std::string> abandoned;
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator(directory_, error)) {
    const std::string name = entry.path().filename();
    if (!name.starts_with(prefix_)) continue;
    auto combination = name.substr(prefix_.size());
    if (claim(combination)) abandoned.push_back(std::move(combination));
  }
  return abandoned;
}

}  // namespace seldial::platform::wayland
