#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

#include <future>
#include <thread>

#include "tests/unixsocket/ListeningServer.h"

namespace seldial::tests {
namespace {

using testing::ElementsAre;
using testing::StartsWith;
using ServerClose = ListeningServer;

TEST_F(ServerClose, InformsOnTheClosingThreadAndRemovesTheFile) {
  listen();
  ASSERT_TRUE(exists(path));
  const auto caller = std::this_thread::get_id();
  delegate->onClose = [caller](GDUnixSocketServer& it) {
    EXPECT_EQ(caller, std::this_thread::get_id());
    EXPECT_EQ(-1, it.fd());
    EXPECT_EQ(2U, it.state());
  };
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_TRUE(server->closeWithError(&error));
  EXPECT_FALSE(error);
  EXPECT_FALSE(exists(path));
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("listening", "close"));
}

TEST_F(ServerClose, ClosingAgainSucceedsAndInformsAgain) {
  listen();
  server->close();
  EXPECT_TRUE(server->closeWithError());
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("listening", "close", "close"));
}

TEST_F(ServerClose, SilentlyGivesNoCallback) {
  listen();
  EXPECT_TRUE(server->closeSilently());
  EXPECT_TRUE(server->closeSilently());
  EXPECT_EQ(2U, server->state());
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("listening"));
}

TEST_F(ServerClose, OfTheBaseClassIsTheServersOwn) {
  listen();
  GDUnixSocket& base = *server;
  base.close();
  EXPECT_EQ(1U, delegate->journal.count("close"));
  EXPECT_TRUE(base.closeWithError());
  EXPECT_EQ(2U, delegate->journal.count("close"));
}

TEST_F(ServerClose, OfAServerThatNeverListenedFails) {
  std::optional<Error> error;
  EXPECT_FALSE(server->closeWithError(&error));
  EXPECT_EQ(Error::gduds_errorForCode(-3016, "Bad socket"), error);
  EXPECT_FALSE(server->closeWithError(nullptr));
  EXPECT_FALSE(server->closeSilently());
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("close Failed to close socket. Bad socket",
                                                     "close Failed to close socket. Bad socket"));
  EXPECT_EQ(0U, server->state());
}

TEST_F(ServerClose, EndsTheAcceptLoopWithoutAFailureCallback) {
  listen();
  const Peer peer = connect();
  server->close();
  queue->waitUntilIdle();
  EXPECT_THAT(delegate->journal.lines().back(), "close");
  for (const auto& line : delegate->journal.lines()) {
    EXPECT_THAT(line, testing::Not(StartsWith("accept failed")));
  }
}

TEST_F(ServerClose, DisconnectsAllWithoutCallbacks) {
  listen();
  const Peer first = connect();
  const Peer second = connect();
  server->close();
  EXPECT_EQ("", first.receiveToTheEnd());
  EXPECT_EQ("", second.receiveToTheEnd());
  queue->waitUntilIdle();
  EXPECT_TRUE(server->connectedClients().empty());
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("listening", "accept", "accept", "close"));
}

TEST_F(ServerClose, LeavesNoDescriptorOpen) {
  const std::size_t before = openDescriptors();
  for (int round = 0; round < 20; ++round) {
    listen();
    const Peer peer = connect();
    server->close();
    queue->waitUntilIdle();
  }
  EXPECT_EQ(before, openDescriptors());
}

TEST_F(ServerClose, CanListenAgainAndServes) {
  listen();
  connect().leave();
  server->close();
  listen();
  EXPECT_EQ(3U, server->state());
  Peer peer = connect();
  peer.send("again");
  peer.leave();
  EXPECT_TRUE(delegate->journal.waitFor("data 5"));
  EXPECT_TRUE(delegate->journal.waitFor("disconnect"));
}

TEST_F(ServerClose, ListeningAgainAtOnceLeavesOneAcceptLoop) {
  for (int round = 0; round < 100; ++round) {
    listen();
    const Peer peer = Peer::connectedTo(path);
    server->close();
  }
  listen();
  // Only the loop, no reader: those of earlier rounds have ended or will end.
  EXPECT_TRUE(eventually([this] { return queue->pending() == 1; }));
  server->close();
  queue->waitUntilIdle();
}

TEST_F(ServerClose, IsAllowedInADataCallback) {
  delegate->onData = [](GDUnixSocketServer& it, auto&) { it.close(); };
  listen();
  const Peer peer = connect();
  peer.send("x");
  EXPECT_EQ("", peer.receiveToTheEnd());
  queue->waitUntilIdle();
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("listening", "accept", "close", "data 1"));
}

TEST_F(ServerClose, IsAllowedInADisconnectCallback) {
  delegate->onDisconnect = [](GDUnixSocketServer& it, auto&) { it.close(); };
  listen();
  connect().leave();
  queue->waitUntilIdle();
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("listening", "accept", "close", "disconnect"));
}

TEST_F(ServerClose, AFailingAcceptOnAnOpenServerIsReportedAndClosesIt) {
  listen();
  const Peer peer = connect();
  const std::string descriptor = std::to_string(server->fd());
  ::shutdown(server->fd(), SHUT_RDWR);  // the system now refuses to accept
  ASSERT_TRUE(delegate->journal.waitFor("close"));
  const auto lines = delegate->journal.lines();
  EXPECT_EQ(1U, delegate->journal.count(
                    "accept failed Failed to accept connection, closing socket. fd: " + descriptor +
                    ". errno: 22. Invalid argument"));
  EXPECT_EQ("close", lines.back());
  EXPECT_EQ(2U, server->state());
  EXPECT_FALSE(exists(path));
  queue->waitUntilIdle();
  listen();
  connect();
}

TEST_F(ServerClose, WhoHoldsTheCloseLockHoldsUpTheClose) {
  listen();
  std::future<bool> closed;
  {
    const MutexLock lock(server->closeLock());
    std::promise<int> closer;
    closed = std::async(std::launch::async, [&] {
      closer.set_value(threadNumber());
      return server->closeWithError();
    });
    const int thread = closer.get_future().get();
    ASSERT_TRUE(eventually([thread] { return isAsleepOrGone(thread); }));
    EXPECT_NE(-1, server->fd());
    EXPECT_TRUE(exists(path));
  }
  EXPECT_TRUE(closed.get());
}

TEST_F(ServerClose, TheLastReferenceMayGoInTheCloseCallback) {
  listen();
  server->close();
  queue->waitUntilIdle();  // no task refers to the server any more
  std::shared_ptr<GDUnixSocketServer> last = std::move(server);
  server = serverAt(path);
  delegate->onClose = [&last](GDUnixSocketServer&) { last.reset(); };
  last->close();
  EXPECT_FALSE(last);
}

TEST_F(ServerClose, AListeningServerLivesUntilItIsClosed) {
  listen();
  const Peer peer = connect();  // the loop is running
  const std::weak_ptr<GDUnixSocketServer> weak = server;
  server = serverAt(directory.path("other"));
  const Peer later = connect();
  weak.lock()->close();
  queue->waitUntilIdle();
  EXPECT_TRUE(weak.expired());
}

TEST_F(ServerClose, UnlinkingLeavesOtherFilesAlone) {
  EXPECT_FALSE(server->unlinkSocket()) << "nothing there";
  EXPECT_FALSE(server->unlinkSocket("/tmp")) << "a directory";
  EXPECT_TRUE(exists("/tmp"));
  { const Peer dead = Peer::listeningAt(path); }
  EXPECT_FALSE(server->unlinkSocket(path.c_str()));
  EXPECT_FALSE(exists(path));
}

}  // namespace
}  // namespace seldial::tests
