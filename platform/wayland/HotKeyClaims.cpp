#include "platform/wayland/HotKeyClaims.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/VirtualKeys.h"
#include "platform/linux/KeyTable.h"

namespace seldial::platform::wayland {
namespace {

constexpr std::uint32_t kHotKeyModifiers =
    kHotKeyCommand | kHotKeyShift | kHotKeyOption | kHotKeyControl;

}  // namespace

bool canBeBound(std::uint32_t keyCode, std::uint32_t modifiers) {
  constexpr std::array kLocks{kVK_CapsLock, kVK_ANSI_KeypadClear};  // the second is Num Lock
  const bool isLock = std::find(kLocks.begin(), kLocks.end(), keyCode) != kLocks.end();
  // Ctrl+Insert is what makes an application copy: the binding would take it.
  const bool copies = keyCode == kVK_Help && (modifiers & kHotKeyModifiers) == kHotKeyControl;
  return linux_port::keyAtPosition(keyCode) &&
         !isModifierKey(static_cast<std::uint16_t>(keyCode)) && !isLock && !copies;
}

HotKeyClaim::HotKeyClaim(HotKeyClaim&& other) noexcept
    : path_(std::move(other.path_)), file_(std::exchange(other.file_, -1)) {}

HotKeyClaim& HotKeyClaim::operator=(HotKeyClaim&& other) noexcept {
  std::swap(path_, other.path_);
  std::swap(file_, other.file_);
  return *this;
}

HotKeyClaim::~HotKeyClaim() {
  if (file_ == -1) return;
  unlink(path_.c_str());  // before the lock goes: whoever opened the file sees that it is gone
  close(file_);
}

std::optional<HotKeyClaim> HotKeyClaims::claim(const std::string& combination) {
  mkdir(directory_.c_str(), S_IRWXU);
  const std::string path = directory_ + "/" + prefix_ + combination;
  for (;;) {
    const int file =
        open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (file == -1) return HotKeyClaim(path, -1);  // no such directory: nobody can be asked
    if (flock(file, LOCK_EX | LOCK_NB) == -1) {
      close(file);
      return {};
    }
    struct stat opened {};
    if (fstat(file, &opened) == 0 && opened.st_nlink > 0) return HotKeyClaim(path, file);
    close(file);  // its holder removed it meanwhile
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
