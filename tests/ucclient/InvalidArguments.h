// Tries every option of a program with invalid values.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryDirectory.h"

namespace seldial {

/// Runs a program without a desktop. A dial command would leave a mark.
class InvalidArguments {
 public:
  explicit InvalidArguments(std::string program) : program_(std::move(program)) {}

  /// Checks that each option in the help text, with each value, is refused with a sentence and
  /// dials nothing. The help text must have `count` options.
  void tryAllOptions(std::size_t count) const {
    const auto help = run({"--help"});
    EXPECT_EQ(help.status, 0);
    const std::set<std::string> options = optionsOf(help.output);
    EXPECT_EQ(options.size(), count) << help.output;
    for (const std::string& option : options) {
      for (const std::string& value : values()) expectRefusal({option + "=" + value});
      expectRefusal({option + "x"});
    }
    EXPECT_FALSE(std::filesystem::exists(mark_)) << "something was dialled";
  }

  /// Expects the name of the program and an error.
  void expectRefusal(const std::vector<std::string>& arguments) const {
    const auto result = run(arguments);
    std::string commandLine;
    for (const std::string& argument : arguments) commandLine += argument.substr(0, 50) + " ";
    EXPECT_TRUE(result.status == 1 || result.status == 2) << commandLine << result.status;
    EXPECT_TRUE(std::regex_search(result.output, std::regex("(^|\n)seldial(-[a-z]+)?: [^\n]")) ||
                result.output.find("\nwrong ") != std::string::npos)
        << commandLine << result.output;
  }

 private:
  struct Result {
    std::string output;
    int status;
  };

  static std::vector<std::string> with(std::vector<std::string> command,
                                       const std::vector<std::string>& more) {
    command.insert(command.end(), more.begin(), more.end());
    return command;
  }

  std::vector<std::string> values() const {
    return {"", "nonsense", "--help", "$(touch " + mark_ + ");'\"", std::string(5000, '9')};
  }

  static std::set<std::string> optionsOf(const std::string& text) {
    const std::regex option("--[a-z][a-z-]+");
    std::set<std::string> found;
    for (std::sregex_iterator it(text.begin(), text.end(), option), end; it != end; ++it) {
      found.insert(it->str());
    }
    return found;
  }

  [[nodiscard]] Result run(const std::vector<std::string>& arguments) const {
    tests::ChildProcess process(
        with({program_}, arguments),
        {"DISPLAY=", "WAYLAND_DISPLAY", "XDG_CONFIG_HOME=/nowhere", "TMPDIR=/tmp",
         "XDG_RUNTIME_DIR=" + directory_.path(""), "DBUS_SESSION_BUS_ADDRESS=disabled:"},
        {}, {tests::Streams::Errors::kWithOutput, {}});
    std::string output;
    for (const std::string& line : process.restOfLines()) output += line + "\n";
    return {output, process.wait()};
  }

  const std::string program_;
  const tests::TemporaryDirectory directory_;
  const std::string mark_ = directory_.path("mark");
};

}  // namespace seldial
