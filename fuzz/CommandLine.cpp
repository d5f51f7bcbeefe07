// Fuzzes the command line. The input is the arguments, one per line.
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/AppDelegate.h"
#include "fuzz/Check.h"
#include "tests/support/PlatformDoubles.h"

namespace {

/// Whether both are equal, ignoring case.
bool isSame(std::string_view one, std::string_view other) {
  if (one.size() != other.size()) return false;
  for (std::size_t index = 0; index < one.size(); ++index) {
    const bool letter = (other[index] | 0x20) >= 'a' && (other[index] | 0x20) <= 'z';
    if (one[index] != other[index] && !(letter && (one[index] ^ 0x20) == other[index]))
      return false;
  }
  return true;
}

bool isFlag(std::string_view argument, std::string_view name) {
  return !argument.empty() && (argument[0] == '-' || argument[0] == '/') &&
         isSame(argument.substr(1), name);
}

bool hasFlag(const std::vector<std::string>& arguments, std::string_view name) {
  for (const auto& argument : arguments) {
    if (isFlag(argument, name)) return true;
  }
  return false;
}

/// The text after `name` in the last argument that begins with `name`.
std::optional<std::string> value(const std::vector<std::string>& arguments, std::string_view name) {
  for (auto argument = arguments.rbegin(); argument != arguments.rend(); ++argument) {
    if (argument->size() >= name.size() && isSame(argument->substr(0, name.size()), name)) {
      return argument->substr(name.size());
    }
  }
  return {};
}

std::vector<std::string> lines(std::string_view input) {
  std::vector<std::string> result(1);
  for (const char character : input) {
    if (character == '\n') {
      result.emplace_back();
    } else {
      result.back() += character;
    }
  }
  return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto application = std::make_shared<seldial::tests::RecordingApplication>();
  const auto& arguments = application->commandLine =
      lines({reinterpret_cast<const char*>(data), size});
  const auto app = seldial::AppDelegate::init(
      {application, std::make_shared<seldial::tests::ManualMainQueue>(), {}});
  app->parseCommandLine();
  CHECK(app->FlagHelp == (hasFlag(arguments, "help") || hasFlag(arguments, "h")));
  CHECK(app->FlagChangeLog == hasFlag(arguments, "changelog"));
  CHECK(app->FlagShowApi == hasFlag(arguments, "showapi"));
  CHECK(app->FlagLog == hasFlag(arguments, "log"));
  CHECK(app->FlagJsonLog == hasFlag(arguments, "jsonlog"));
  CHECK(app->ValueDialerPipeName == value(arguments, "dialerpipename="));
  CHECK(app->ValueClientPipeName == value(arguments, "clientpipename="));
  return 0;
}
