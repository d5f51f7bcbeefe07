// echo_server PATH: sends back whatever its clients send, until its own input ends (Ctrl-D).
#include <unixsocket/GDUnixSocketServer.h>

#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <string>

namespace {

class Echo final : public seldial::GDUnixSocketServerDelegate {
  /// On a thread of the client's own, so that one who does not read keeps nobody else from reading.
  void unixSocketServerDidReceiveData(seldial::GDUnixSocketServer& server,
                                      const seldial::Data& data,
                                      const std::string& clientID) override {
    seldial::Data rest = data;
    while (!rest.empty()) {  // one send may take less than all
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
    std::cerr << "This cannot be the path of a socket: " << argv[1] << '\n';
    return 2;
  }
  const auto echo = std::make_shared<Echo>();  // ours: the server only looks at it
  server->setDelegate(echo);

  std::optional<seldial::Error> error;
  if (!server->listenWithError(&error)) {
    std::cerr << error->localizedDescription << '\n';
    return 1;
  }
  std::cout << "listening at " << server->socketPath() << std::endl;
  std::cin.ignore(std::numeric_limits<std::streamsize>::max());
  server->close();
}
