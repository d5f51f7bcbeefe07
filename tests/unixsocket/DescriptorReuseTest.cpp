// The system reuses a closed descriptor number at once. No call that was already in progress may
// reach the new file.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <future>
#include <thread>
#include <vector>

#include "tests/unixsocket/ListeningServer.h"
#include "tests/unixsocket/SystemCalls.h"

namespace seldial::tests {
namespace {

/// Opens files, like another part of the program, and closes them in its destructor.
class Opener {
 public:
  Opener() = default;
  ~Opener() {
    for (const int number : numbers_) ::close(number);
  }
  Opener(const Opener&) = delete;
  Opener& operator=(const Opener&) = delete;

  /// Whether the system assigns `number` to one of the next files.
  bool isGiven(int number) {
    for (int i = 0; i < 20; ++i) numbers_.push_back(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    return std::find(numbers_.begin(), numbers_.end(), number) != numbers_.end();
  }

 private:
  std::vector<int> numbers_;
};

/// Closes on another thread just before a call of that name is made, and checks whether the number
/// is free.
class CloseInBetween {
 public:
  CloseInBetween(std::string name, std::function<void()> close) : close_(std::move(close)) {
    SystemCalls::set([this, name = std::move(name)](const SystemCall& call) {
      if (call.name == name && !begun_.exchange(true)) closeNow(call.descriptor);
      return std::optional<int>();
    });
  }
  ~CloseInBetween() {
    SystemCalls::set({});
    closer_.join();
  }
  CloseInBetween(const CloseInBetween&) = delete;
  CloseInBetween& operator=(const CloseInBetween&) = delete;

  [[nodiscard]] bool wasUsed() const { return used_; }

 private:
  void closeNow(int descriptor) {
    std::promise<int> closer;
    closer_ = std::thread([this, &closer] {
      closer.set_value(threadNumber());
      close_();
    });
    const int thread = closer.get_future().get();
    EXPECT_TRUE(eventually([thread] { return isAsleepOrGone(thread); }));
    EXPECT_FALSE(opener_.isGiven(descriptor)) << "the call would reach another file";
    used_ = true;
  }

  std::function<void()> close_;
  std::atomic<bool> begun_{false};
  std::atomic<bool> used_{false};
  Opener opener_;
  std::thread closer_;
};

TEST(DescriptorReuse, AReadIsNeverOvertakenByTheClose) {
  const auto pair = makePair();
  CloseInBetween attack("read", [&pair] { pair.socket->close(); });
  EXPECT_FALSE(pair.socket->readWithError());
  EXPECT_TRUE(attack.wasUsed());
}

TEST(DescriptorReuse, AWriteIsNeverOvertakenByTheClose) {
  const auto pair = makePair();
  CloseInBetween attack("write", [&pair] { pair.socket->close(); });
  EXPECT_EQ(-1, pair.socket->writeData("x"));
  EXPECT_TRUE(attack.wasUsed());
}

TEST(DescriptorReuse, AConnectIsNeverOvertakenByTheClose) {
  const TemporaryDirectory directory;
  const Peer server = Peer::listeningAt(directory.path("socket"));
  const auto client = GDUnixSocketClient::initWithSocketPath(directory.path("socket"));
  CloseInBetween attack("connect", [&client] { client->close(); });
  client->connectWithAutoRead(false);
  EXPECT_TRUE(attack.wasUsed());
}

using DescriptorReuseOfAServer = ListeningServer;

TEST_F(DescriptorReuseOfAServer, AnAcceptIsNeverOvertakenByTheClose) {
  CloseInBetween attack("accept", [this] { server->close(); });
  listen();
  EXPECT_TRUE(eventually([&attack] { return attack.wasUsed(); }));
  queue->waitUntilIdle();
}

TEST_F(DescriptorReuseOfAServer, AReaderIsNeverOvertakenByTheClose) {
  listen();
  CloseInBetween attack("read", [this] { server->close(); });
  const Peer peer = connect();
  EXPECT_TRUE(eventually([&attack] { return attack.wasUsed(); }));
  queue->waitUntilIdle();
}

TEST_F(DescriptorReuseOfAServer, ListeningAgainWaitsForTheAcceptInProgress) {
  CloseInBetween attack("accept", [this] { server->listenWithError(); });
  listen();
  EXPECT_TRUE(eventually([&attack] { return attack.wasUsed(); }));
}

}  // namespace
}  // namespace seldial::tests
