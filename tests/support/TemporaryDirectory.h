#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace seldial::tests {

/// A directory of the test's own with a short path, removed with everything in it.
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

}  // namespace seldial::tests
