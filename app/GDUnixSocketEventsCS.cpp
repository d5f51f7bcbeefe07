#include "app/GDUnixSocketEventsCS.h"

#include <utility>

#include "api/FatalError.h"
#include "api/JSON.h"
#include "app/AppDelegate.h"

namespace seldial {
namespace {

/// Ends each chunk in a list of chunks. No chunk contains it, since it is never part of UTF-8.
constexpr char kChunkEnd = '\xFF';

/// Logs and appends each chunk, in the order in which they arrived.
void takeChunks(AppDelegate& main, const std::string& clientID, const std::string& chunks) {
  std::size_t begin = 0;
  while (begin < chunks.size()) {
    const std::size_t end = chunks.find(kChunkEnd, begin);
    const std::string chunk = chunks.substr(begin, end - begin);
    std::string line = "Unix socket server; did receive: ";
    main.log(line.append(chunk).append("; from client with id: ").append(clientID));
    main.appendUnixSocketInput(clientID, chunk);
    begin = end + 1;
  }
}

}  // namespace

/// Chunks of one client that arrived one after another. Chunks are small and the main thread may be
/// far behind, so one step per chunk would need several times the memory of the command.
class GDUnixSocketEventsCS::ReceivedChunks {
 public:
  ReceivedChunks(std::string clientID, const Data& chunk)
      : clientID_(std::move(clientID)), chunks_(chunk + kChunkEnd) {}

  /// False if the main thread has already begun to process the chunks.
  bool add(const Data& chunk) {
    const std::lock_guard lock(mutex_);
    if (chunks_.empty()) return false;
    chunks_ += chunk;
    chunks_ += kChunkEnd;
    return true;
  }

  void deliverTo(AppDelegate& main) { takeChunks(main, clientID_, taken()); }

  [[nodiscard]] const std::string& clientID() const { return clientID_; }

 private:
  std::string taken() {
    const std::lock_guard lock(mutex_);
    return std::exchange(chunks_, {});
  }

  const std::string clientID_;
  std::mutex mutex_;
  std::string chunks_;  ///< guarded by `mutex_`; empty once the main thread has taken them
};

GDUnixSocketEventsCS::GDUnixSocketEventsCS(std::weak_ptr<AppDelegate> main,
                                           std::shared_ptr<platform::MainQueue> mainQueue)
    : Main(std::move(main)), mainQueue_(std::move(mainQueue)) {}

void GDUnixSocketEventsCS::unixSocketServerDidStartListening(GDUnixSocketServer& /*server*/) {
  logOnMainQueue("Unix socket server; did start listening");
}

void GDUnixSocketEventsCS::unixSocketServerDidClose(GDUnixSocketServer& /*server*/,
                                                    const std::optional<Error>& /*error*/) {
  logOnMainQueue("Unix socket server; did close");
}

void GDUnixSocketEventsCS::unixSocketServerDidAcceptClientWithID(GDUnixSocketServer& /*server*/,
                                                                 const std::string& clientID) {
  logOnMainQueue("Unix socket server; did accept client with id: " + clientID);
  postToMain([clientID](AppDelegate& main) { main.takeUnixSocketInput(clientID); });
}

void GDUnixSocketEventsCS::unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& /*server*/,
                                                                     const std::string& clientID) {
  logOnMainQueue("Unix socket server; client with id did disconnect: " + clientID);
  postToMain([clientID](AppDelegate& main) { main.processUnixSocketInputString(clientID); });
}

void GDUnixSocketEventsCS::unixSocketServerDidReceiveData(GDUnixSocketServer& /*server*/,
                                                          const Data& data,
                                                          const std::string& clientID) {
  // Each chunk is decoded separately, on purpose: one that ends inside a character is discarded.
  if (!isValidUTF8(data)) {
    logOnMainQueue("Unix socket server; did receive nothing; from client with id: " + clientID +
                   ".");
    return;
  }
  const std::lock_guard lock(mutex_);
  const bool next = lastReceived_ && lastReceived_->clientID() == clientID;
  if (next && lastReceived_->add(data)) return;
  lastReceived_ = std::make_shared<ReceivedChunks>(clientID, data);
  postLocked([received = lastReceived_](AppDelegate& main) { received->deliverTo(main); });
}

void GDUnixSocketEventsCS::unixSocketServerDidFailToReadForClientID(GDUnixSocketServer& /*server*/,
                                                                    const std::string& clientID,
                                                                    const Error& /*error*/) {
  logOnMainQueue("Unix socket server; did fail to read for client id: " + clientID);
}

void GDUnixSocketEventsCS::unixSocketServerDidFailToAcceptConnection(GDUnixSocketServer& /*server*/,
                                                                     const Error& /*error*/) {
  logOnMainQueue("Unix socket server; did fail to accept");
}

void GDUnixSocketEventsCS::unixSocketClientDidReceiveData(GDUnixSocketClient& /*client*/,
                                                          const Data& data) {
  logOnMainQueue(isValidUTF8(data) ? "Unix socket client; did receive: " + data
                                   : "Unix socket client; did receive nothing.");
}

void GDUnixSocketEventsCS::unixSocketClientDidFailToReadWithError(GDUnixSocketClient& /*client*/,
                                                                  const Error& /*error*/) {
  logOnMainQueue("Unix socket client; did fail to read");
}

void GDUnixSocketEventsCS::logOnMainQueue(std::string message) {
  postToMain([message = std::move(message)](AppDelegate& main) { main.log(message); });
}

template <class Step>
void GDUnixSocketEventsCS::postToMain(Step step) {
  const std::lock_guard lock(mutex_);
  lastReceived_ = nullptr;
  postLocked(std::move(step));
}

template <class Step>
void GDUnixSocketEventsCS::postLocked(Step step) {
  mainQueue_->async([weakMain = Main, step = std::move(step)] {
    const auto main = weakMain.lock();
    if (!main) fatalError("socket event: the application is gone");
    step(*main);
  });
}

}  // namespace seldial
