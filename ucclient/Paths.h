// The paths of the other programs, and the directory of the two sockets.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace seldial {

/// The directory of the running executable; empty if unknown.
[[nodiscard]] std::string executableDirectory();

/// The program `seldial`, or the one in its bundle, that belongs to a program in `directory`: in
/// the same directory, in the parent directory of an installation, or in the sibling directory of a
/// build tree. Otherwise the bare name, which is searched for in PATH.
[[nodiscard]] std::string findSeldial(const std::string& directory);

/// A program that belongs to Seldial, such as "seldial-choose", found in the same way.
[[nodiscard]] std::string findProgram(const std::string& name, const std::string& directory);

/// A directory that only its owner can access, for the two sockets. The destructor removes it and
/// the files for which file() was called.
class PrivateDirectory {
 public:
  /// The maximum length of the path of a file in it, in bytes: the limit of socket addresses.
  static constexpr std::size_t kMaxPathLength = 103;

  /// Creates one under the first of `parents` where that succeeds and the path leaves space for the
  /// name of a socket; null if there is none.
  static std::unique_ptr<PrivateDirectory> createIn(const std::vector<std::string>& parents);

  /// XDG_RUNTIME_DIR, TMPDIR and /tmp: the directories for temporary files, best first.
  static std::vector<std::string> defaultParents();

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
