// Connections one after another: the callbacks of a connection whose peer has disconnected come
// before the accept of the next one. The tests delay a reader at the critical moment.
#include <gmock/gmock.h>
#include <sys/socket.h>

#include <atomic>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "tests/unixsocket/ListeningServer.h"
#include "tests/unixsocket/SystemCalls.h"

namespace seldial::tests {
namespace {

using testing::ElementsAre;

class ServerOrder : public ListeningServer {
 protected:
  ServerOrder() {
    delegate->onAccept = [this](auto&, auto&) { acceptThread_ = threadNumber(); };
    SystemCalls::set({}, [this](const SystemCall& call) {
      if (call.name == "accept") ++accepted_;
    });
  }
  ~ServerOrder() override { server->closeSilently(); }

  /// From now on, the task of the next reader is kept until releaseReader().
  void holdNextReader() {
    queue->start = [this](auto task) {
      if (holding_.exchange(false)) {
        held_ = std::move(task);
      } else {
        queue->run(std::move(task));
      }
    };
    holding_ = true;
  }
  void releaseReader() { queue->run(std::move(held_)); }

  /// Connects, and waits until the accept thread has the connection and waits for something else.
  Peer connectDuringAccept() {
    const int before = accepted_;
    Peer peer = Peer::connectedTo(path);
    EXPECT_TRUE(eventually([&] { return accepted_ > before && isAsleepOrGone(acceptThread_); }));
    return peer;
  }

 private:
  std::atomic<int> acceptThread_{0};
  std::atomic<int> accepted_{0};
  std::atomic<bool> holding_{false};
  std::function<void()> held_;
  SystemCalls calls_;
};

TEST_F(ServerOrder, ADepartedPeerIsReadToItsEndBeforeTheNextAccept) {
  holdNextReader();
  listen();
  Peer first = connect();
  first.send(std::string(600, 'x'));
  first.leave();
  const Peer second = connectDuringAccept();
  EXPECT_EQ(1U, delegate->journal.count("accept"));
  releaseReader();
  ASSERT_TRUE(delegate->journal.waitFor("accept", 2));
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("listening", "accept", "data 256", "data 256",
                                                     "data 88", "disconnect", "accept"));
}

TEST_F(ServerOrder, AReadFailureComesBeforeTheNextAcceptToo) {
  holdNextReader();
  listen();
  Peer first = connect();
  ASSERT_EQ(1, server->sendData("x", lastClientID()));
  first.leave();  // with an unread byte: the connection is reset
  const Peer second = connectDuringAccept();
  EXPECT_EQ(1U, delegate->journal.count("accept"));
  releaseReader();
  ASSERT_TRUE(delegate->journal.waitFor("accept", 2));
  EXPECT_THAT(delegate->journal.lines(),
              ElementsAre("listening", "accept", "read failed -3017", "accept"));
}

TEST_F(ServerOrder, APeerThatHasFinishedSendingIsReadToItsEndBeforeTheNextAccept) {
  holdNextReader();
  listen();
  const Peer first = connect();
  first.send("x");
  ::shutdown(first.fd, SHUT_WR);
  const Peer second = connectDuringAccept();
  EXPECT_EQ(1U, delegate->journal.count("accept"));
  releaseReader();
  ASSERT_TRUE(delegate->journal.waitFor("accept", 2));
  EXPECT_THAT(delegate->journal.lines(),
              ElementsAre("listening", "accept", "data 1", "disconnect", "accept"));
}

TEST_F(ServerOrder, AConnectedPeerIsNeverWaitedFor) {
  holdNextReader();
  listen();
  const Peer first = connect();
  first.send("x");
  const Peer second = connect();
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("listening", "accept", "accept"));
  releaseReader();
  EXPECT_TRUE(delegate->journal.waitFor("data 1"));
}

TEST_F(ServerOrder, AConnectionWithoutAReaderIsNeverWaitedFor) {
  listen();
  auto [socket, peer] = makePair();
  server->addClient(socket);
  peer.leave();
  connect();
}

TEST_F(ServerOrder, RemovingTheDepartedConnectionEndsTheWait) {
  holdNextReader();
  listen();
  connect().leave();
  const auto departed = server->connectedClients().begin()->second;
  const Peer second = connectDuringAccept();
  EXPECT_EQ(1U, delegate->journal.count("accept"));
  server->removeAndCloseClient(departed);
  EXPECT_TRUE(delegate->journal.waitFor("accept", 2));
  releaseReader();
}

TEST_F(ServerOrder, ACloseEndsTheWait) {
  holdNextReader();
  listen();
  connect().leave();
  const Peer second = connectDuringAccept();
  EXPECT_TRUE(server->closeWithError());
  EXPECT_EQ("", second.receiveToTheEnd());
  releaseReader();
  queue->waitUntilIdle();
  EXPECT_EQ(0U, delegate->journal.count("disconnect"));
}

TEST_F(ServerOrder, ADisconnectCallbackMayCloseTheServerWhileTheNextPeerWaits) {
  delegate->onDisconnect = [](GDUnixSocketServer& it, auto&) { it.close(); };
  holdNextReader();
  listen();
  connect().leave();
  const Peer second = connectDuringAccept();
  releaseReader();
  EXPECT_EQ("", second.receiveToTheEnd());
  queue->waitUntilIdle();
}

/// Acts as the receiver of commands: received data belongs to the connection that was accepted
/// last.
class CommandDelegate final : public GDUnixSocketServerDelegate {
 public:
  void unixSocketServerDidAcceptClientWithID(GDUnixSocketServer& /*server*/,
                                             const std::string& clientID) override {
    const std::lock_guard lock(mutex_);
    current_ = clientID;
    command_.clear();
  }
  void unixSocketServerDidReceiveData(GDUnixSocketServer& /*server*/, const Data& data,
                                      const std::string& clientID) override {
    const std::lock_guard lock(mutex_);
    if (clientID == current_) command_ += data;
  }
  void unixSocketServerClientWithIDDidDisconnect(GDUnixSocketServer& /*server*/,
                                                 const std::string& clientID) override {
    const std::lock_guard lock(mutex_);
    if (clientID != current_) return;
    commands_.push_back(command_);
    changed_.notify_all();
  }

  /// Waits for that many commands.
  std::vector<std::string> commands(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, kTimeLimit, [&] { return commands_.size() >= count; });
    return commands_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::string current_;
  std::string command_;
  std::vector<std::string> commands_;
};

/// SELDIAL_COMMANDS asks for more, such as 100000.
unsigned commandCount() {
  const char* const wanted = std::getenv("SELDIAL_COMMANDS");
  return wanted == nullptr ? 4000 : static_cast<unsigned>(std::strtoul(wanted, nullptr, 10));
}

class Commands : public ListeningServer {
 protected:
  Commands() {
    server->setDelegate(commands);
    EXPECT_TRUE(server->listenWithError());
    for (unsigned number = 0; number < commandCount(); ++number) {
      sent.push_back(std::to_string(number) + std::string(number % 700, 'x'));
    }
  }

  void send(unsigned number) const {
    const Peer peer = Peer::connectedTo(path);
    ASSERT_TRUE(peer.send(sent[number]));
  }

  const std::shared_ptr<CommandDelegate> commands = std::make_shared<CommandDelegate>();
  std::vector<std::string> sent;
};

TEST_F(Commands, OfOneClientWithoutAPauseAreAllReceivedInOrder) {
  for (unsigned number = 0; number < sent.size(); ++number) send(number);
  EXPECT_EQ(sent, commands->commands(sent.size()));
}

TEST_F(Commands, OfEightAlternatingClientsAreAllReceivedInOrder) {
  constexpr unsigned kClients = 8;
  std::mutex mutex;
  std::condition_variable next;
  unsigned turn = 0;
  std::vector<std::thread> clients;
  for (unsigned client = 0; client < kClients; ++client) {
    clients.emplace_back([&, client] {
      for (unsigned number = client; number < sent.size(); number += kClients) {
        std::unique_lock lock(mutex);
        next.wait(lock, [&] { return turn == number; });
        send(number);
        ++turn;
        next.notify_all();
      }
    });
  }
  for (auto& client : clients) client.join();
  EXPECT_EQ(sent, commands->commands(sent.size()));
}

}  // namespace
}  // namespace seldial::tests
