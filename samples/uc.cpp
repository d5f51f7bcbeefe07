// A UC client: starts Seldial, sets Ctrl+Alt+D, and prints each call until Ctrl-C or SIGTERM. It
// listens at clientpipename with Seldial's socket library, and prints the messages as JSON.
#include <seldial/unixsocket/GDUnixSocketClient.h>
#include <seldial/unixsocket/GDUnixSocketServer.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <thread>

namespace {

// virtualkey 2 is the D key of a US keyboard.
constexpr const char* kSetHotKey =
    R"({"command":"SetHotKey","modifierCtrl":true,"modifierAlt":true,"virtualkey":2,"readdelay":500})";

/// Each connection carries one message. Seldial opens one at a time, so nothing needs a lock.
class Messages final : public seldial::GDUnixSocketServerDelegate {
  void unixSocketServerDidReceiveData(seldial::GDUnixSocketServer& /*server*/,
                                      const seldial::Data& data, const std::string& id) override {
    message_[id] += data;
  }
  void unixSocketServerClientWithIDDidDisconnect(seldial::GDUnixSocketServer& /*server*/,
                                                 const std::string& id) override {
    const std::string message = std::move(message_[id]);
    message_.erase(id);
    const bool call = message.find(R"("command":"MakeCall")") != std::string::npos;
    const bool set = message.find(R"("result":true)") != std::string::npos;
    std::cout << (call  ? "call: "
                  : set ? "hot key is set: "
                        : "refused: ")
              << message << "\n"
              << std::flush;
    if (!call && !set) kill(getpid(), SIGTERM);
  }

  std::map<std::string, std::string> message_;
};

pid_t start(const std::string& program, const std::string& folder, const sigset_t& signals) {
  const pid_t process = fork();
  if (process != 0) return process;
  prctl(PR_SET_PDEATHSIG, SIGTERM);  // Seldial ends with this program, even if that is killed
  sigprocmask(SIG_UNBLOCK, &signals, nullptr);
  const std::string dialer = "dialerpipename=" + folder + "/dialer";
  const std::string client = "clientpipename=" + folder + "/client";
  if (std::freopen("/dev/null", "w", stdout) != nullptr) {
    execlp(program.c_str(), program.c_str(), dialer.c_str(), client.c_str(), nullptr);
  }
  _exit(127);
}

/// Connects until Seldial listens; false if it ends before.
bool sendWhenReady(const std::string& path, const seldial::Data& command, pid_t process) {
  while (waitpid(process, nullptr, WNOHANG) == 0) {
    const auto connection = seldial::GDUnixSocketClient::initWithSocketPath(path);
    if (connection->connectWithAutoRead(false)) {
      return connection->writeData(command) == static_cast<long>(command.size());
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return false;
}

}  // namespace

int main(int argc, char* argv[]) {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGCHLD}) sigaddset(&signals, signal);
  sigprocmask(SIG_BLOCK, &signals, nullptr);

  std::string folder = std::filesystem::temp_directory_path() / "uc-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) return 1;
  const auto messages = std::make_shared<Messages>();
  const auto server = seldial::GDUnixSocketServer::initWithSocketPath(folder + "/client");
  server->setDelegate(messages);
  int status = 1;
  const pid_t seldial =
      server->listenWithError() ? start(argc > 1 ? argv[1] : "seldial", folder, signals) : -1;
  if (seldial > 0 && sendWhenReady(folder + "/dialer", kSetHotKey, seldial)) {
    int signal = 0;
    sigwait(&signals, &signal);
    kill(seldial, SIGTERM);
    waitpid(seldial, &status, 0);
  }
  server->close();
  std::filesystem::remove_all(folder);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
