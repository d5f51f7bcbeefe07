#include "app/GDUnixSocketEventsCS.h"

#include <utility>
#include <vector>

#include "api/FatalError.h"
#include "api/JSON.h"
#include "app/AppDelegate.h"

namespace seldial {
namespace {

/// When so many bytes wait for the main thread, it is woken up to take them.
constexpr std::size_t kMostWaiting = 4096;

}  // namespace

/// Chunks of one client that arrived one after another. Chunks are small and the main thread may be
/// far behind, so one step per chunk would need several times the memory of the command.
class GDUnixSocketEventsCS::ReceivedChunks {
 public:
  /// `logs`: whether each chunk gets a log line.
  ReceivedChunks(std::string clientID, const Data& chunk, bool logs)
      : clientID_(std::move(clientID)), logs_(logs) {
    append(chunk);
  }

  /// Returns the number of bytes that wait for the main thread; 0 if it has already begun to
  /// process them, and the chunk was not added.
  std::size_t add(const Data& chunk) {
    const std::lock_guard lock(mutex_);
    if (chunks_.text.empty()) return 0;
    append(chunk);
    return chunks_.text.size();
  }

  void deliverTo(AppDelegate& main) {
    Chunks chunks = taken();
    const bool isCurrent = clientID_ == main.UnixSocketConnetedClientId;
    for (std::size_t begin = 0; logs_ && begin < chunks.text.size();) {
      const std::string chunk = chunks.chunkAt(begin);
      std::string line = "Unix socket server; did receive: ";
      main.log(line.append(chunk).append("; from client with id: ").append(clientID_));
      if (!isCurrent) main.appendUnixSocketInput(clientID_, chunk);  // only a log line
      begin += chunk.size();
    }
    // All chunks at once: a large text is moved, not copied.
    if (isCurrent) main.appendUnixSocketInput(clientID_, std::move(chunks.text));
  }

  [[nodiscard]] const std::string& clientID() const { return clientID_; }

 private:
  struct Chunks {
    std::string text;
    /// Whether a chunk ends with that byte; only for log lines. A list of lengths would be larger
    /// than the text if the chunks are tiny.
    std::vector<bool> isEnd;

    [[nodiscard]] std::string chunkAt(std::size_t begin) const {
      std::size_t last = begin;
      while (!isEnd[last]) ++last;
      return text.substr(begin, last + 1 - begin);
    }
  };

  void append(const Data& chunk) {
    chunks_.text += chunk;
    if (!logs_) return;
    chunks_.isEnd.resize(chunks_.text.size());
    chunks_.isEnd.back() = true;
  }

  Chunks taken() {
    const std::lock_guard lock(mutex_);
    return std::exchange(chunks_, {});
  }

  const std::string clientID_;
  const bool logs_;
  std::mutex mutex_;
  Chunks chunks_;  ///< guarded by `mutex_`; empty once the main thread has taken them
};

GDUnixSocketEventsCS::GDUnixSocketEventsCS(std::weak_ptr<AppDelegate> main,
                                           std::shared_ptr<platform::MainQueue> mainQueue,
                                           bool logs)
    : Main(std::move(main)), mainQueue_(std::move(mainQueue)), logs_(logs) {}

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
  postToMain(logs_, [clientID](AppDelegate& main) { main.takeUnixSocketInput(clientID); });
}

void GDUnixSocketEventsCS::unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& /*server*/,
                                                                     const std::string& clientID) {
  logOnMainQueue("Unix socket server; client with id did disconnect: " + clientID);
  postToMain(true, [clientID](AppDelegate& main) { main.processUnixSocketInputString(clientID); });
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
  const std::size_t waiting = next ? lastReceived_->add(data) : 0;
  if (waiting == 0) {
    lastReceived_ = std::make_shared<ReceivedChunks>(clientID, data, logs_);
    postLocked(logs_, [received = lastReceived_](AppDelegate& main) { received->deliverTo(main); });
  } else if (waiting >= kMostWaiting && waiting - data.size() < kMostWaiting) {
    mainQueue_->async([] {});
  }
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
  if (!logs_) return;
  postToMain(true, [message = std::move(message)](AppDelegate& main) { main.log(message); });
}

template <class Step>
void GDUnixSocketEventsCS::postToMain(bool wakesUp, Step step) {
  const std::lock_guard lock(mutex_);
  lastReceived_ = nullptr;
  postLocked(wakesUp, std::move(step));
}

template <class Step>
void GDUnixSocketEventsCS::postLocked(bool wakesUp, Step step) {
  auto task = [weakMain = Main, step = std::move(step)] {
    const auto main = weakMain.lock();
    if (!main) fatalError("socket event: the application is gone");
    step(*main);
  };
  if (wakesUp) {
    mainQueue_->async(std::move(task));
  } else {
    mainQueue_->asyncBeforeNext(std::move(task));
  }
}

}  // namespace seldial
