// Which combinations running programs of this kind hold, where the compositor does not tell.
//
// Each combination is a file in the user's runtime directory, locked by the program that holds it.
// The lock goes with the program, however it ends, so a file without a lock is a combination that
// a killed program left bound.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace seldial::platform::wayland {

/// One combination, held for as long as this object lives.
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
  /// `directory` is made if it is missing; `compositor` tells the user's compositors apart. Neither
  /// it nor a combination may contain a slash.
  HotKeyClaims(std::string directory, const std::string& compositor)
      : directory_(std::move(directory)), prefix_(compositor + " ") {}

  /// Nothing when another program, or this one, holds the combination.
  std::optional<HotKeyClaim> claim(const std::string& combination);

  /// The combinations that killed programs have left, each told once.
  std::vector<std::string> takeAbandoned();

 private:
  std::string directory_;
  std::string prefix_;
};

}  // namespace seldial::platform::wayland
