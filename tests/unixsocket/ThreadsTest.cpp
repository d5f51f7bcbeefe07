// Many connections at once: none waits for another, and nothing is left behind.
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <random>
#include <thread>

#include "tests/unixsocket/Support.h"

namespace seldial::tests {
namespace {

TEST(Threads, FiveHundredConnectionsDoNotStarveTheNextAndLeaveNoThread) {
  allowDescriptors(2048);
  const TemporaryDirectory directory;
  const auto delegate = std::make_shared<RecordingServerDelegate>();
  const auto server = GDUnixSocketServer::initWithSocketPath(directory.path("socket"));
  server->setDelegate(delegate);
  std::thread([] {}).join();  // ThreadSanitizer starts one of its own with the first
  const std::size_t threads = runningThreads();
  const std::size_t descriptors = openDescriptors();
  ASSERT_TRUE(server->listenWithError());
  {
    std::vector<Peer> held;
    for (int i = 0; i < 500; ++i) held.push_back(Peer::connectedTo(directory.path("socket")));
    ASSERT_TRUE(delegate->journal.waitFor("accept", 500));
    Peer next = Peer::connectedTo(directory.path("socket"));
    next.send("served");
    next.leave();
    EXPECT_TRUE(delegate->journal.waitFor("data 6"));
    EXPECT_TRUE(delegate->journal.waitFor("disconnect"));
    EXPECT_GE(runningThreads(), 500U);
  }
  EXPECT_TRUE(delegate->journal.waitFor("disconnect", 501));
  EXPECT_TRUE(eventually([&] { return server->connectedClients().empty(); }));
  server->close();
  EXPECT_TRUE(eventually([&] { return openDescriptors() == descriptors; }));
  EXPECT_TRUE(eventually([&] { return runningThreads() <= threads; }));
}

/// Counts the callbacks of a server, and checks their order for each connection.
class CountingDelegate final : public GDUnixSocketServerDelegate {
 public:
  void unixSocketServerDidAcceptClientWithID(GDUnixSocketServer& server,
                                             const std::string& clientID) override {
    ++accepted;
    server.sendData("hello", clientID);
  }
  void unixSocketServerDidReceiveData(GDUnixSocketServer& server, const Data& data,
                                      const std::string& clientID) override {
    bytes += data.size();
    server.sendData("x", clientID);
  }
  void unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& /*server*/,
                                                 const std::string& /*clientID*/) override {
    ++ended;
  }
  void unixSocketServerDidFailToReadForClientID(GDUnixSocketServer& /*server*/,
                                                const std::string& /*clientID*/,
                                                const Error& /*error*/) override {
    ++ended;
  }
  void unixSocketServerDidFailToAcceptConnection(GDUnixSocketServer& /*server*/,
                                                 const Error& /*error*/) override {
    ++acceptFailures;
  }

  std::atomic<std::size_t> accepted{0};
  std::atomic<std::size_t> bytes{0};
  std::atomic<std::size_t> ended{0};
  std::atomic<std::size_t> acceptFailures{0};
};

/// Runs `work` in that many threads and waits for all of them.
void inThreads(unsigned count, const std::function<void(unsigned number)>& work) {
  std::vector<std::thread> threads;
  for (unsigned number = 0; number < count; ++number) threads.emplace_back(work, number);
  for (auto& thread : threads) thread.join();
}

TEST(Stress, SixtyFourThreadsLoseNoByteAndNoCallback) {
  allowDescriptors(2048);
  constexpr unsigned kThreads = 64;
  constexpr unsigned kRounds = 160;  // 10,240 connections
  const TemporaryDirectory directory;
  const std::string path = directory.path("socket");
  const std::size_t descriptors = openDescriptors();
  const auto delegate = std::make_shared<CountingDelegate>();
  const auto server = GDUnixSocketServer::initWithSocketPath(path);
  server->setDelegate(delegate);
  ASSERT_TRUE(server->listenWithMaxConnections(64));
  std::atomic<std::size_t> sent{0};
  inThreads(kThreads, [&](unsigned number) {
    std::minstd_rand random(number + 1);
    for (unsigned round = 0; round < kRounds; ++round) {
      const auto client = GDUnixSocketClient::initWithSocketPath(path);
      const bool autoRead = random() % 2 == 0;
      ASSERT_TRUE(client->connectWithAutoRead(autoRead));
      const std::string data(random() % 2000, 'x');
      ASSERT_EQ(static_cast<std::int64_t>(data.size()), client->writeData(data));
      sent += data.size();
      if (random() % 2 == 0) ::shutdown(client->fd(), SHUT_WR);
      if (!autoRead) client->readWithError();
      client->close();
    }
  });
  EXPECT_TRUE(eventually([&] { return delegate->ended == kThreads * kRounds; }));
  EXPECT_EQ(kThreads * kRounds, delegate->accepted);
  EXPECT_TRUE(eventually([&] { return server->connectedClients().empty(); }));
  server->close();
  EXPECT_EQ(0U, delegate->acceptFailures);
  EXPECT_EQ(sent, delegate->bytes);
  EXPECT_TRUE(eventually([&] { return openDescriptors() == descriptors; }));
}

/// Tells the clients when they can connect.
class OpenFlag {
 public:
  void set(bool open) {
    const std::lock_guard lock(mutex_);
    open_ = open;
    changed_.notify_all();
  }
  void wait() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return open_; });
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool open_ = false;
};

/// Closes, reopens and destroys servers while other threads use them.
void reopenServers(const std::string& path, const std::shared_ptr<CountingDelegate>& delegate,
                   OpenFlag& openFlag) {
  for (unsigned round = 0; round < 40; ++round) {
    const auto server = GDUnixSocketServer::initWithSocketPath(path);
    server->setDelegate(delegate);
    for (int again = 0; again < 3; ++again) {
      ASSERT_TRUE(server->listenWithMaxConnections(64));
      openFlag.set(true);
      if (round % 4 == 0) break;  // closed before its loop has started, or just then
      const std::size_t before = delegate->accepted;
      ASSERT_TRUE(eventually([&] { return delegate->accepted >= before + 5; }));
      EXPECT_EQ(-1, server->sendData("x", "nobody"));
      openFlag.set(false);
      ASSERT_TRUE(server->closeWithError());
    }
    openFlag.set(false);
    server->closeSilently();
  }
}

TEST(Stress, ServersMayCloseReopenAndGoWhileSixtyFourThreadsUseThem) {
  allowDescriptors(2048);
  const TemporaryDirectory directory;
  const std::string path = directory.path("socket");
  const std::size_t descriptors = openDescriptors();
  const auto delegate = std::make_shared<CountingDelegate>();
  OpenFlag openFlag;
  std::atomic<bool> over{false};
  std::thread disturber([&] {
    reopenServers(path, delegate, openFlag);
    over = true;
    openFlag.set(true);
  });
  inThreads(64, [&](unsigned number) {
    std::minstd_rand random(number + 1);
    const auto client = GDUnixSocketClient::initWithSocketPath(path);
    client->setSendTimeout(std::chrono::seconds(1));
    for (openFlag.wait(); !over; openFlag.wait()) {
      if (!client->connectWithAutoRead(random() % 2 == 0)) continue;
      client->writeData(std::string(random() % 2000, 'x'));
      if (random() % 2 == 0) client->readWithError();
      if (random() % 2 == 0) client->close();
    }
    client->close();
  });
  disturber.join();
  EXPECT_EQ(0U, delegate->acceptFailures);
  EXPECT_TRUE(eventually([&] { return openDescriptors() == descriptors; }));
}

}  // namespace
}  // namespace seldial::tests
