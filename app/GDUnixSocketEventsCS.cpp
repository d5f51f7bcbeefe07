#include "app/GDUnixSocketEventsCS.h"

#include <optional>
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

/// Chunks of one client that arrived before any other step was posted. Chunks are small and the
/// main thread may be far behind, so one step per chunk would need many times the memory of the
/// command.
class GDUnixSocketEventsCS::ReceivedChunks {
 public:
  /// `logs`: whether each chunk gets a log line.
  ReceivedChunks(std::string clientID, bool logs) : clientID_(std::move(clientID)), logs_(logs) {}

  /// `chunk` is empty if it was not valid. Returns the number of bytes that wait for the main
  /// thread; nothing if it has already begun to process them, and the chunk was not added.
  std::optional<std::size_t> add(std::string_view chunk) {
    const std::lock_guard lock(mutex_);
    if (taken_) return {};
    chunks_.text += chunk;
    if (logs_) {
      chunks_.ends.resize(chunks_.ends.size() + chunk.size());
      chunks_.ends.push_back(true);
    }
    return chunks_.text.size();
  }

  void deliverTo(AppDelegate& main) {
    Chunks chunks = taken();
    const bool isCurrent = clientID_ == main.UnixSocketConnetedClientId;
    std::size_t begin = 0;
    std::size_t size = 0;
    for (const bool isEnd : chunks.ends) {
      if (!isEnd) {
        ++size;
        continue;
      }
      const std::string chunk = chunks.text.substr(begin, size);
      log(chunk, main);
      if (!isCurrent && size > 0) main.appendUnixSocketInput(clientID_, chunk);  // only a log line
      begin += std::exchange(size, 0);
    }
    // All chunks at once: a large text is moved, not copied.
    if (isCurrent) main.appendUnixSocketInput(clientID_, std::move(chunks.text));
  }

 private:
  struct Chunks {
    std::string text;
    /// False for each byte and true after each chunk; only for log lines. A list of lengths would
    /// be larger than the text if the chunks are tiny.
    std::vector<bool> ends;
  };

  void log(const std::string& chunk, AppDelegate& main) const {
    std::string line = "Unix socket server; did receive";
    if (chunk.empty()) {
      main.log(line.append(" nothing; from client with id: ").append(clientID_).append("."));
    } else {
      main.log(line.append(": ").append(chunk).append("; from client with id: ").append(clientID_));
    }
  }

  Chunks taken() {
    const std::lock_guard lock(mutex_);
    taken_ = true;
    return std::exchange(chunks_, {});
  }

  const std::string clientID_;
  const bool logs_;
  std::mutex mutex_;
  Chunks chunks_;       ///< guarded by `mutex_`
  bool taken_ = false;  ///< guarded by `mutex_`: the main thread has taken the chunks
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
  const std::string_view chunk = isValidUTF8(data) ? std::string_view(data) : std::string_view();
  if (chunk.empty() && !logs_) return;
  const std::lock_guard lock(mutex_);
  const auto received = lastReceived_.find(clientID);
  const auto waiting =
      received != lastReceived_.end() ? received->second->add(chunk) : std::nullopt;
  if (!waiting) {
    postChunk(clientID, chunk);
  } else if (*waiting >= kMostWaiting && *waiting - chunk.size() < kMostWaiting) {
    mainQueue_->async([] {});
  }
}

void GDUnixSocketEventsCS::postChunk(const std::string& clientID, std::string_view chunk) {
  if (logs_) lastReceived_.clear();  // log lines of several clients have an order
  auto& received = lastReceived_[clientID];
  received = std::make_shared<ReceivedChunks>(clientID, logs_);
  received->add(chunk);
  postLocked(logs_, [received](AppDelegate& main) { received->deliverTo(main); });
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
  lastReceived_.clear();
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
