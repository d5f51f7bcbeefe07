#include <csignal>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "client/Options.h"
#include "ucclient/MainThread.h"
#include "ucclient/Options.h"
#include "ucclient/Session.h"

namespace {

using Arguments = std::vector<std::string>;

std::optional<seldial::Options> optionsOf(const Arguments& arguments, std::string& error) {
  return seldial::readOptions(arguments, seldial::defaultConfigurationPath(), error);
}

int runSession(const seldial::Options& options, const Arguments& arguments) {
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);  // a script behind a pipe sees each line at once
  const auto session = std::make_shared<seldial::Session>(
      options, [arguments](std::string& error) { return optionsOf(arguments, error); });
  seldial::onTerminationSignals(session->endRequest());
  return session->run();
}

}  // namespace

int main(int argc, char* argv[]) {
  const Arguments arguments(argv + 1, argv + argc);
  std::signal(SIGPIPE, SIG_IGN);  // writing to a closed pipe fails with an error instead
  if (const auto status = seldial::runCommand(arguments)) return *status;
  std::string error;
  const auto options = optionsOf(arguments, error);
  if (!options) {
    std::fprintf(stderr, "seldial-uc: %s\nTry seldial-uc --help.\n", error.c_str());
    return 2;
  }
  if (options->help) {
    std::fputs(seldial::helpText(), stdout);
    return 0;
  }
  if (options->version) {
    std::puts("seldial-uc " SELDIAL_VERSION);
    return 0;
  }
  return runSession(*options, arguments);
}
