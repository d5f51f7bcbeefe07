// echo_server PATH: sends back the data of its clients, until its standard input ends (Ctrl-D).
#include <seldial/unixsocket/GDUnixSocketServer.h>

#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <string>

namespace {

class Echo final : public seldial::GDUnixSocketServerDelegate {
  /// Runs on the connection's own thread.
  void unixSocketServerDidReceiveData(seldial::GDUnixSocketServer& server,
                                      const seldial::Data& data,
                                      const std::string& clientID) override {
    seldial::Data rest = data;
    while (!rest.empty()) {  // one send may be partial
      std::optional<seldial::Error> error;
      const auto taken = server.sendData(rest, clientID, &error);
      if (taken == -1) {
        std::cerr << error->localizedDescription << '\n';
        return;
      }
      rest.erase(0, static_cast<std::size_t>(taken));
    }
  }
};

}  // namespace

int main(int argc, char* argv[]) {
  if (argc != 2) {
    std::cerr << "usage: echo_server PATH\n";
    return 2;
  }
  const auto server = seldial::GDUnixSocketServer::initWithSocketPath(argv[1]);
  if (!server) {
    std::cerr << "not a valid socket path: " << argv[1] << '\n';
    return 2;
  }
  const auto echo = std::make_shared<Echo>();  // the server does not own its delegate
  server->setDelegate(echo);

  std::optional<seldial::Error> error;
  if (!server->listenWithError(&error)) {
    std::cerr << error->localizedDescription << '\n';
    return 1;
  }
  std::cout << "listening at " << server->socketPath() << "\n" << std::flush;
  std::cin.ignore(std::numeric_limits<std::streamsize>::max());
  server->close();
}
