// Redirects standard output to a file for the lifetime of the object.
#pragma once

#include <unistd.h>

#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

namespace seldial::tests {

class CapturedOutput {
 public:
  CapturedOutput() : file_(std::tmpfile()), before_(dup(STDOUT_FILENO)) {
    std::fflush(stdout);
    dup2(fileno(file_), STDOUT_FILENO);
  }
  ~CapturedOutput() {
    std::fflush(stdout);
    dup2(before_, STDOUT_FILENO);
    close(before_);
    std::fclose(file_);
  }
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

  /// Everything written since the object was created.
  [[nodiscard]] std::string text() const {
    std::fflush(stdout);
    std::string all;
    char buffer[4096];
    for (off_t offset = 0;;) {
      const ssize_t count = pread(fileno(file_), buffer, sizeof buffer, offset);
      if (count <= 0) return all;
      all.append(buffer, static_cast<std::size_t>(count));
      offset += count;
    }
  }

  [[nodiscard]] std::vector<std::string> lines() const {
    std::istringstream stream(text());
    std::vector<std::string> result;
    for (std::string line; std::getline(stream, line);) result.push_back(line);
    return result;
  }

 private:
  std::FILE* file_;
  int before_;
};

}  // namespace seldial::tests
