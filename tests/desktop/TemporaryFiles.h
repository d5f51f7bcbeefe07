// Files of a test, gone with it.
#pragma once

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <string>

namespace seldial::desktop {

/// A directory of its own for one file or more.
class TemporaryDirectory {
 public:
  TemporaryDirectory() {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no temporary directory");
  }
  ~TemporaryDirectory() { rmdir(path_.c_str()); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  std::string path_ = "/tmp/seldial-test-XXXXXX";
};

/// A file with a text.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& text) { std::ofstream(path_) << text; }
  ~TemporaryFile() { unlink(path_.c_str()); }
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  TemporaryDirectory directory_;
  std::string path_ = directory_.path() + "/file";
};

/// A named pipe.
class Pipe {
 public:
  Pipe() {
    if (mkfifo(path_.c_str(), S_IRUSR | S_IWUSR) != 0) throw std::runtime_error("no named pipe");
  }
  ~Pipe() { unlink(path_.c_str()); }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  TemporaryDirectory directory_;
  std::string path_ = directory_.path() + "/pipe";
};

}  // namespace seldial::desktop
