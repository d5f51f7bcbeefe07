#include <csignal>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "client/Configuration.h"
#include "ucclient/MainThread.h"
#include "ucclient/Options.h"
#include "ucclient/Session.h"

namespace {

int runSession(const seldial::Options& options) {
  std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);  // a script behind a pipe sees each line at once
  std::signal(SIGPIPE, SIG_IGN);                  // a write to a reader that is gone fails instead
  const auto session = std::make_shared<seldial::Session>(options);
  seldial::onTerminationSignals(session->endRequest());
  return session->run();
}

}  // namespace

int main(int argc, char* argv[]) {
  std::string error;
  const auto options = seldial::optionsFrom(std::vector<std::string>(argv + 1, argv + argc),
                                            seldial::usualConfigurationPath(), error);
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
  return runSession(*options);
}
