#include "app/GDUnixSocketEventsCS.h"

#include <mutex>
#include <utility>
#include <vector>

#include "api/FatalError.h"
#include "api/JSON.h"
#include "app/AppDelegate.h"

namespace seldial {
namespace {

/// Logs and appends each chunk, in the order in which they arrived.
void takeChunks(AppDelegate& main, const std::string& clientID, const std::string& text,
                const std::vector<std::size_t>& ends) {
  std::size_t begin = 0;
  for (const std::size_t end : ends) {
    const std::string chunk = text.substr(begin, end - begin);
    std::string line = "Unix socket server; did receive: ";
    main.log(line.append(chunk).append("; from client with id: ").append(clientID));
    main.appendUnixSocketInput(clientID, chunk);
    begin = end;
  }
}

}  // namespace

/// Chunks of one client that arrived one after another.
struct GDUnixSocketEventsCS::Received {
  const std::string clientID;
  std::string text;
  std::vector<std::size_t> ends;  ///< of each chunk, in `text`
};

/// The chunks that were posted last, as long as the main thread has not begun to process them and
/// nothing was posted after them: the next chunk is added to them. Chunks are small and the main
/// thread may be far behind, so one step per chunk would need several times the memory of the
/// command.
struct GDUnixSocketEventsCS::LastReceived {
  std::mutex mutex;
  std::shared_ptr<Received> chunks;  ///< guarded by `mutex`; null if the next chunk needs a step
};

GDUnixSocketEventsCS::GDUnixSocketEventsCS(std::weak_ptr<AppDelegate> main,
                                           std::shared_ptr<platform::MainQueue> mainQueue)
    : Main(std::move(main)),
      mainQueue_(std::move(mainQueue)),
      lastReceived_(std::make_shared<LastReceived>()) {}

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
  const std::lock_guard lock(lastReceived_->mutex);
  auto& chunks = lastReceived_->chunks;
  if (!chunks || chunks->clientID != clientID) {
    chunks = std::make_shared<Received>(Received{clientID, {}, {}});
    postLocked([last = lastReceived_, received = chunks](AppDelegate& main) {
      {
        const std::lock_guard taking(last->mutex);
        if (last->chunks == received) last->chunks = nullptr;
      }
      takeChunks(main, received->clientID, received->text, received->ends);
    });
  }
  chunks->text += data;
  chunks->ends.push_back(chunks->text.size());
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
  const std::lock_guard lock(lastReceived_->mutex);
  lastReceived_->chunks = nullptr;
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
