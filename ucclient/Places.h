// Where the client finds the other programs, and the directory of the two sockets.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace seldial {

/// The directory of the running program's file; empty where the system does not tell.
[[nodiscard]] std::string ownDirectory();

/// The program `seldial`, by itself or in its bundle, that belongs to a program in `directory`: the
/// one beside it, or in the directory above where both are installed, or in the neighbouring
/// directory of a build tree. Otherwise the bare name, which is searched for in PATH.
[[nodiscard]] std::string findSeldial(const std::string& directory);

/// A program that belongs to Seldial, such as "seldial-choose", found in the same way.
[[nodiscard]] std::string findProgram(const std::string& name, const std::string& directory);

/// A directory that only its owner may enter, for the two sockets. Removed with the object,
/// together with the files that were named in it.
class PrivateDirectory {
 public:
  /// The longest path of a file in it, in bytes: what a socket's address holds.
  static constexpr std::size_t kLongestPath = 103;

  /// Makes one under the first of `parents` where that succeeds and the path leaves room for a
  /// socket's name; null when there is none.
  static std::unique_ptr<PrivateDirectory> makeUnder(const std::vector<std::string>& parents);

  /// XDG_RUNTIME_DIR, TMPDIR and /tmp: the directories for short-lived files, best first.
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
