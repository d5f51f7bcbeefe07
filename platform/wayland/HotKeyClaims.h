// The combinations that running Seldial processes hold, for compositors that do not report this.
//
// Each combination is a file in the user's runtime directory, locked by the process that holds it.
// The lock ends with the process, however it ends, so a file without a lock is a combination that a
// killed process has left bound.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace seldial::platform::wayland {

/// Holds one combination for the lifetime of the object.
class HotKeyClaim {
 public:
  HotKeyClaim(HotKeyClaim&& other) noexcept;
  HotKeyClaim& operator=(HotKeyClaim&& other) noexcept;
  ~HotKeyClaim();

 private:
  friend class HotKeyClaims;
  HotKeyClaim(std::string path, int file) : path_(std::move(path)), file_(file) {}

  std::string path_;
  int file_;
};

/// The combinations of one compositor. Main thread only.
class HotKeyClaims {
 public:
  /// `directory` is created if it is missing. `compositor` distinguishes several compositors of one
  /// user. Neither it nor a combination may contain a slash.
  HotKeyClaims(std::string directory, const std::string& compositor)
      : directory_(std::move(directory)), prefix_(compositor + " ") {}

  /// Nothing if another process, or this one, already holds the combination.
  std::optional<HotKeyClaim> claim(const std::string& combination);

  /// The combinations that killed processes have left; each is returned once.
  std::vector<std::string> takeAbandoned();

 private:
  std::string directory_;
  std::string prefix_;
};

}  // namespace seldial::platform::wayland
