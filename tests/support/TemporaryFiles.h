// Files of a test, gone with it.
#pragma once

#include <sys/stat.h>

#include <fstream>
#include <stdexcept>
#include <string>

#include "tests/support/TemporaryDirectory.h"

namespace seldial::tests {

/// A file with a text.
class TemporaryFile {
 public:
  explicit TemporaryFile(const std::string& text) { std::ofstream(path_) << text; }

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  tests::TemporaryDirectory directory_;
  std::string path_ = directory_.path("file");
};

/// A named pipe.
class Pipe {
 public:
  Pipe() {
    if (mkfifo(path_.c_str(), S_IRUSR | S_IWUSR) != 0) throw std::runtime_error("no named pipe");
  }

  [[nodiscard]] const std::string& path() const { return path_; }

 private:
  tests::TemporaryDirectory directory_;
  std::string path_ = directory_.path("pipe");
};

}  // namespace seldial::tests
