#include "tests/support/desktop/XServer.h"

#include <unistd.h>

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

// The server is killed, so it does not remove the file of its socket. If it has ended before, its
// display may be another server's by now.
XServer::~XServer() {
  if (process_->isRunning()) unlink(("/tmp/.X11-unix/X" + display_.substr(1)).c_str());
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
