#include "shortcut/Answer.h"

#include <QCoreApplication>
#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>

#include "client/Connection.h"
#include "client/Protocol.h"
#include "platform/System.h"
#include "unixsocket/GDUnixSocketServer.h"

namespace seldial {
namespace {

/// A seldial that is dialling answers once it has dialled.
constexpr std::chrono::seconds kLimit{10};

/// Takes the first answer out of the messages that arrive; calls of numbers are none.
class Receiver final : public GDUnixSocketServerDelegate {
 public:
  /// Nothing when none has come in time.
  std::optional<Message> wait() {
    std::unique_lock lock(mutex_);
    arrived_.wait_for(lock, kLimit, [this] { return answer_.has_value(); });
    return answer_;
  }

  void unixSocketServerDidReceiveData(GDUnixSocketServer& /*server*/, const Data& data,
                                      const std::string& clientID) override {
    const std::lock_guard lock(mutex_);
    partial_[clientID] += data;
  }

  void unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& /*server*/,
                                                 const std::string& clientID) override {
    const std::lock_guard lock(mutex_);
    const Message message = messageFromJSON(partial_[clientID]);
    const bool isAnswer =
        message.kind != Message::Kind::Unknown && message.kind != Message::Kind::MakeCall;
    if (isAnswer) answer_ = message;
    arrived_.notify_one();
  }

 private:
  std::mutex mutex_;  ///< guards what follows
  std::condition_variable arrived_;
  std::map<std::string, std::string> partial_;  ///< messages, by connection
  std::optional<Message> answer_;
};

/// Closes it when it goes out of scope: a listening server lives until then.
struct CloseServer {
  void operator()(GDUnixSocketServer* server) const { server->close(); }
};

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(Delivery)
};

std::optional<std::string> failureOf(const std::optional<Message>& answer) {
  if (!answer) return Texts::tr("Seldial has not answered").toStdString();
  if (answer->kind == Message::Kind::HotKeySet) return std::nullopt;
  return Texts::tr("Seldial refused the shortcut: %1")
      .arg(QString::fromStdString(answer->text))
      .toStdString();
}

}  // namespace

std::optional<std::string> sendAndAwaitAnswer(const std::string& command, const std::string& path,
                                              const std::string& answerPath) {
  if (isListening(answerPath)) return sendCommand(command, path);
  const auto server = GDUnixSocketServer::initWithSocketPath(answerPath);
  if (!server) return answerPath + " cannot be the path of a socket";
  const std::unique_ptr<GDUnixSocketServer, CloseServer> closed(server.get());
  const auto receiver = std::make_shared<Receiver>();
  server->setDelegate(receiver);
  std::optional<Error> error;
  if (!server->listenWithError(&error)) {
    return "cannot listen at " + answerPath + ": " + platform::errorText(error->errorNumber);
  }
  auto failure = sendCommand(command, path);
  return failure ? failure : failureOf(receiver->wait());
}

}  // namespace seldial
