#include "ucclient/MessageListener.h"

#include <utility>

namespace seldial {

void MessageAssembler::append(const std::string& connection, const std::string& chunk) {
  partial_[connection] += chunk;
}

std::string MessageAssembler::finish(const std::string& connection) {
  std::string message = std::move(partial_[connection]);
  partial_.erase(connection);
  return message;
}

void MessageAssembler::discard(const std::string& connection) {
  partial_.erase(connection);
}

/// The server's delegate. Its callbacks run on the library's threads and only post to the main
/// thread, which alone uses the assembler.
class MessageListener::Receiver final : public GDUnixSocketServerDelegate,
                                        public std::enable_shared_from_this<Receiver> {
 public:
  Receiver(std::shared_ptr<MainThread> mainThread, Events events)
      : mainThread_(std::move(mainThread)), events_(std::move(events)) {}

  void unixSocketServerDidAcceptClientWithID(GDUnixSocketServer& /*server*/,
                                             const std::string& /*clientID*/) override {
    post([](Receiver& self) { self.events_.connected(); });
  }

  void unixSocketServerDidReceiveData(GDUnixSocketServer& /*server*/, const Data& data,
                                      const std::string& clientID) override {
    post([data, clientID](Receiver& self) { self.assembler_.append(clientID, data); });
  }

  void unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& /*server*/,
                                                 const std::string& clientID) override {
    post([clientID](Receiver& self) { self.events_.received(self.assembler_.finish(clientID)); });
  }

  void unixSocketServerDidFailToReadForClientID(GDUnixSocketServer& /*server*/,
                                                const std::string& clientID,
                                                const Error& error) override {
    post([clientID, why = error.localizedDescription](Receiver& self) {
      self.assembler_.discard(clientID);
      self.events_.failed("a message was lost. " + why);
    });
  }

  void unixSocketServerDidFailToAcceptConnection(GDUnixSocketServer& /*server*/,
                                                 const Error& error) override {
    post([why = error.localizedDescription](Receiver& self) { self.events_.failed(why); });
  }

 private:
  /// The step runs only if the listener still exists at that time.
  void post(std::function<void(Receiver&)> step) {
    mainThread_->post([weak = weak_from_this(), step = std::move(step)] {
      if (const auto self = weak.lock()) step(*self);
    });
  }

  const std::shared_ptr<MainThread> mainThread_;
  const Events events_;
  MessageAssembler assembler_;
};

std::unique_ptr<MessageListener> MessageListener::listenAt(const std::string& path,
                                                           std::shared_ptr<MainThread> mainThread,
                                                           Events events, std::string& error) {
  const auto server = GDUnixSocketServer::initWithSocketPath(path);
  if (!server) {
    error = path + " cannot be the path of a socket";
    return nullptr;
  }
  auto receiver = std::make_shared<Receiver>(std::move(mainThread), std::move(events));
  server->setDelegate(receiver);
  std::optional<Error> failure;
  if (!server->listenWithError(&failure)) {
    error = failure->localizedDescription;
    return nullptr;
  }
  return std::unique_ptr<MessageListener>(new MessageListener(server, std::move(receiver)));
}

MessageListener::MessageListener(std::shared_ptr<GDUnixSocketServer> server,
                                 std::shared_ptr<Receiver> receiver)
    : server_(std::move(server)), receiver_(std::move(receiver)) {}

MessageListener::~MessageListener() {
  server_->close();
}

}  // namespace seldial
