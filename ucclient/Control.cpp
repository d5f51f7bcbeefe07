#include "ucclient/Control.h"

#include <map>
#include <utility>

#include "client/Connection.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial {

void History::add(const std::string& outcome) {
  lines_.push_back(timeText(std::time(nullptr)) + "  " + outcome + "\n");
  if (lines_.size() > kMaxOutcomes) lines_.pop_front();
}

std::string History::text() const {
  std::string text;
  for (const std::string& line : lines_) text += line;
  return text;
}

std::string timeText(std::time_t time) {
  std::tm local{};
  localtime_r(&time, &local);
  char text[32];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local)};
}

/// The server's delegate. Its callbacks run on the library's threads and only post to the main
/// thread.
class ControlSocket::Receiver final : public GDUnixSocketServerDelegate,
                                      public std::enable_shared_from_this<Receiver> {
 public:
  Receiver(std::shared_ptr<GDUnixSocketServer> server, std::shared_ptr<MainThread> mainThread,
           Handler handler)
      : server_(std::move(server)),
        mainThread_(std::move(mainThread)),
        handler_(std::move(handler)) {}

  bool listen() {
    server_->setDelegate(weak_from_this());
    return server_->listenWithError();
  }

  void close() { server_->close(); }

  void unixSocketServerDidReceiveData(GDUnixSocketServer& /*server*/, const Data& data,
                                      const std::string& clientID) override {
    mainThread_->post([weak = weak_from_this(), data, clientID] {
      if (const auto self = weak.lock()) self->received(data, clientID);
    });
  }

  void unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& /*server*/,
                                                 const std::string& clientID) override {
    mainThread_->post([weak = weak_from_this(), clientID] {
      if (const auto self = weak.lock()) self->partial_.erase(clientID);
    });
  }

 private:
  /// Longer requests are not valid.
  static constexpr std::size_t kMaxRequestLength = 256;

  void received(const std::string& data, const std::string& clientID) {
    std::string& request = partial_[clientID];
    request += data;
    const auto end = request.find('\n');
    if (end == std::string::npos && request.size() <= kMaxRequestLength) return;
    const std::string line = request.substr(0, end);
    partial_.erase(clientID);
    handler_(line, [weak = weak_from_this(), clientID](const std::string& answer) {
      const auto self = weak.lock();
      return self && self->reply(answer, clientID);
    });
  }

  bool reply(const std::string& answer, const std::string& clientID) {
    const auto clients = server_->connectedClients();
    const auto client = clients.find(clientID);
    if (client == clients.end()) return false;
    const auto sent = server_->sendData(answer, clientID);
    server_->removeAndCloseClient(client->second);
    return sent == static_cast<std::int64_t>(answer.size());
  }

  const std::shared_ptr<GDUnixSocketServer> server_;
  const std::shared_ptr<MainThread> mainThread_;
  const Handler handler_;
  std::map<std::string, std::string> partial_;  ///< requests so far, by connection
};

std::unique_ptr<ControlSocket> ControlSocket::listenAt(const std::string& path,
                                                       std::shared_ptr<MainThread> mainThread,
                                                       Handler handler) {
  auto server = isListening(path) ? nullptr : GDUnixSocketServer::initWithSocketPath(path);
  if (!server) return nullptr;
  auto receiver =
      std::make_shared<Receiver>(std::move(server), std::move(mainThread), std::move(handler));
  if (!receiver->listen()) return nullptr;
  return std::unique_ptr<ControlSocket>(new ControlSocket(std::move(receiver)));
}

ControlSocket::ControlSocket(std::shared_ptr<Receiver> receiver) : receiver_(std::move(receiver)) {}

ControlSocket::~ControlSocket() {
  receiver_->close();
}

}  // namespace seldial
