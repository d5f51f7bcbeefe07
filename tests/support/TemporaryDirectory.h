// Temporary files of a test.
#pragma once

#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace seldial::tests {

/// An empty directory with a path short enough for a socket, removed with everything in it.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    std::string path = "/tmp/seldial-XXXXXX";
    if (mkdtemp(path.data()) == nullptr) throw std::runtime_error("no temporary directory");
    path_ = path;
  }
  ~TemporaryDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  [[nodiscard]] std::string path(const std::string& name) const { return path_ + "/" + name; }

 private:
  std::string path_;
};

/// A temporary file with the given contents.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& content) { std::ofstream(path_) << content; }

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  TemporaryDirectory directory_;
  std::string path_ = directory_.path("file");
};

class NamedPipe {
 public:
  NamedPipe() {
    if (mkfifo(path_.c_str(), S_IRUSR | S_IWUSR) != 0) throw std::runtime_error("no named pipe");
  }

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  TemporaryDirectory directory_;
  std::string path_ = directory_.path("pipe");
};

}  // namespace seldial::tests
