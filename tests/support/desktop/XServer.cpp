#include "tests/support/desktop/XServer.h"

#include <csignal>
#include <utility>

namespace seldial::tests {

XServer::XServer(const std::vector<std::string>& arguments) {
  std::vector<std::string> command{"Xvfb",       "-displayfd", "1",         "-screen", "0",
                                   "800x600x24", "-noreset",   "-nolisten", "tcp"};
  command.insert(command.end(), arguments.begin(), arguments.end());
  process_ = std::make_unique<ChildProcess>(
      std::move(command), std::vector<std::string>{},
      "the desktop tests need a private X server: sudo apt-get install xvfb");
  display_ = ":" + process_->readLine();
}

int XServer::run(std::vector<std::string> command) const {
  return ChildProcess(std::move(command), {environment()}).wait();
}

void XServer::kill() {
  process_->signal(SIGKILL);
  process_->wait();
}

void XServer::freeze() {
  process_->signal(SIGSTOP);
}

void XServer::thaw() {
  process_->signal(SIGCONT);
}

}  // namespace seldial::tests
