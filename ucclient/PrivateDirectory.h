#pragma once

#include <memory>
#include <string>
#include <vector>

namespace seldial {

/// A directory that its owner alone may enter, for the two sockets. Removed with the object,
/// together with the files that were named in it.
class PrivateDirectory {
 public:
  /// The longest path of a file in it, in bytes: what a socket's address holds.
  static constexpr std::size_t kLongestPath = 103;

  /// Makes one under the first of `parents` where it can be made and leaves room for a socket's
  /// name; null when there is none.
  static std::unique_ptr<PrivateDirectory> makeUnder(const std::vector<std::string>& parents);

  /// Where a user's short-lived files belong, the best place first: XDG_RUNTIME_DIR, TMPDIR, /tmp.
  static std::vector<std::string> usualParents();

  ~PrivateDirectory();
  PrivateDirectory(const PrivateDirectory&) = delete;
  PrivateDirectory& operator=(const PrivateDirectory&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

  /// The path of a file in the directory, to be removed with it.
  std::string file(const std::string& name);

 private:
  explicit PrivateDirectory(std::string path) : path_(std::move(path)) {}

  const std::string path_;
  std::vector<std::string> files_;
};

}  // namespace seldial
