#include "ucclient/MessageListener.h"

#include <utility>

#include "ucclient/MessageAssembler.h"

namespace seldial {

/// The server's delegate. Its callbacks run on the library's threads and only post; the steps that
/// they post run on the main thread, which alone touches the assembler.
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
  /// The step runs if the listener still exists then.
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
    error = path + " cannot be a socket's path";
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
