#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <string>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial {

/// A program that acts as a softphone: writes each argument in brackets, and then a line break, to
/// its reader.
class Softphone {
 public:
  explicit Softphone(const std::string& name) : path_(directory_.path(name)) {
    EXPECT_EQ(mkfifo(pipe_.c_str(), 0600), 0);
    std::ofstream(path_) << "#!/bin/sh\n{ printf '[%s]' \"$@\"; echo; } >" << pipe_ << "\n";
    chmod(path_.c_str(), 0700);
  }

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string directory() const { return directory_.path(""); }

  /// The arguments of the next call.
  [[nodiscard]] std::string called() const {
    return tests::ChildProcess({"cat", pipe_}).readLine();
  }

 private:
  const tests::TemporaryDirectory directory_;
  const std::string path_;
  const std::string pipe_ = directory_.path("pipe");
};

}  // namespace seldial
