#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>

#include "tests/unixsocket/ListeningServer.h"
#include "unixsocket/SocketPath.h"

namespace seldial::tests {
namespace {

using testing::ElementsAre;
using Lines = std::vector<std::string>;
using ServerListen = ListeningServer;

TEST_F(ServerListen, ThePathRulesAreThoseOfTheBaseClass) {
  EXPECT_FALSE(GDUnixSocketServer::init());
  EXPECT_FALSE(GDUnixSocketServer::initWithSocketPath("socket"));
  EXPECT_FALSE(GDUnixSocketServer::initWithSocketPath("/" + std::string(103, 's')));
  EXPECT_EQ(99U, GDUnixSocketServer::initWithSocketPath("/tmp/b", 99)->fragmentSize());
}

TEST_F(ServerListen, AFreshServerIsIdleWithAnEmptyTable) {
  EXPECT_EQ(0U, server->state());
  EXPECT_EQ(-1, server->fd());
  EXPECT_TRUE(server->connectedClients().empty());
  EXPECT_FALSE(GDUnixSocketServer::initWithSocketPath(path)->delegate());
}

TEST_F(ServerListen, InformsOnTheCallingThreadOnceItListens) {
  const auto caller = std::this_thread::get_id();
  delegate->onListening = [caller](GDUnixSocketServer& told) {
    EXPECT_EQ(caller, std::this_thread::get_id());
    EXPECT_EQ(3U, told.state());
    EXPECT_NE(-1, told.fd());
  };
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_TRUE(server->listenWithError(&error));
  EXPECT_FALSE(error);
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("listening"));
  EXPECT_EQ(3U, server->state());
}

TEST_F(ServerListen, APathOf103BytesCanBeListenedOnAndConnectedTo) {
  const std::string longest = directory.path(std::string(103 - directory.path("").size(), 's'));
  const auto other = serverAt(longest);
  ASSERT_TRUE(other);
  EXPECT_TRUE(other->listenWithError());
  const auto client = GDUnixSocketClient::initWithSocketPath(longest);
  EXPECT_TRUE(client->connectWithAutoRead(false));
  EXPECT_TRUE(other->closeSilently());
  EXPECT_FALSE(exists(longest));
}

TEST_F(ServerListen, AStaleSocketFileIsRemovedFirst) {
  { const Peer dead = Peer::listeningAt(path); }
  ASSERT_TRUE(exists(path));
  EXPECT_TRUE(server->listenWithError());
  connect();
}

TEST_F(ServerListen, ARegularFileIsNotRemovedAndBindFails) {
  std::ofstream(path) << "precious";
  std::optional<Error> error;
  EXPECT_FALSE(server->listenWithError(&error));
  ASSERT_TRUE(error);
  EXPECT_EQ(-3023, error->code);
  EXPECT_EQ("Failed to bind socket. fd: -1. errno: 98. Address already in use",
            error->localizedDescription);
  EXPECT_EQ(-1, server->fd());
  EXPECT_EQ(2U, server->state());
  std::string content;
  std::ifstream(path) >> content;
  EXPECT_EQ("precious", content);
  EXPECT_EQ(Lines(), delegate->journal.lines());
}

TEST_F(ServerListen, AMissingDirectoryMakesBindFail) {
  const auto other = serverAt(directory.path("none/socket"));
  std::optional<Error> error;
  EXPECT_FALSE(other->listenWithError(&error));
  EXPECT_EQ("Failed to bind socket. fd: -1. errno: 2. No such file or directory",
            error->localizedDescription);
  EXPECT_EQ(2U, other->state());
}

TEST_F(ServerListen, APathThatAnAddressCannotHoldIsInconsistent) {
  // The initialiser accepts a NUL byte, but the address ends there.
  const Peer innocent = Peer::listeningAt(path);
  const auto other = serverAt(path + std::string("\0x", 2));
  ASSERT_TRUE(other);
  std::optional<Error> error;
  EXPECT_FALSE(other->listenWithError(&error));
  ASSERT_TRUE(error);
  EXPECT_EQ(-3022, error->code);
  EXPECT_EQ("Failed to listen on socket. The socket path is inconsistent",
            error->localizedDescription);
  EXPECT_EQ(-1, other->fd());
  EXPECT_EQ(2U, other->state());
  EXPECT_TRUE(exists(path)) << "the socket of another server, whose path is the beginning";
}

TEST_F(ServerListen, TheOutParameterMayBeNullWhateverFails) {
  std::ofstream(path) << "x";
  EXPECT_FALSE(server->listenWithError(nullptr));
  EXPECT_FALSE(server->listenWithMaxConnections(3, nullptr));
  const auto other = serverAt(path + std::string("\0x", 2));
  EXPECT_FALSE(other->listenWithError(nullptr));
}

TEST_F(ServerListen, AServerWhoseListenFailedCanListenAgain) {
  std::ofstream(path) << "x";
  const std::size_t before = openDescriptors();
  EXPECT_FALSE(server->listenWithError());
  EXPECT_FALSE(server->listenWithError());
  EXPECT_EQ(before, openDescriptors());
  ::unlink(path.c_str());
  EXPECT_TRUE(server->listenWithError());
  connect();
}

TEST_F(ServerListen, AFailedListenAfterACloseLeavesNothingOpen) {
  listen();
  EXPECT_TRUE(server->closeSilently());
  queue->waitUntilIdle();
  std::ofstream(path) << "x";
  const std::size_t before = openDescriptors();
  EXPECT_FALSE(server->listenWithError());
  EXPECT_EQ(before, openDescriptors());
  EXPECT_EQ(-1, server->fd());
  EXPECT_EQ(2U, server->state());
}

TEST_F(ServerListen, TheListeningSocketIsNotInherited) {
  listen();
  EXPECT_EQ(FD_CLOEXEC, ::fcntl(server->fd(), F_GETFD));
}

TEST_F(ServerListen, ListeningTwiceServesTheNewSocketAndKeepsNothingOfTheOldOne) {
  listen();
  const Peer first = connect();
  const std::size_t before = openDescriptors();
  listen();
  const Peer second = connect();
  EXPECT_EQ("", first.receiveToTheEnd());
  EXPECT_EQ(before + 1, openDescriptors()) << "both ends of the second, without the server's first";
  EXPECT_EQ(1U, server->connectedClients().size());
  EXPECT_EQ(0U, delegate->journal.count("close"));
}

TEST_F(ServerListen, ADelegateIsNotNeededAndMayVanish) {
  server->setDelegate({});
  EXPECT_TRUE(server->listenWithError());
  auto other = std::make_shared<RecordingServerDelegate>();
  server->setDelegate(other);
  EXPECT_EQ(other, server->delegate());
  other.reset();
  EXPECT_FALSE(server->delegate());
  Peer peer = Peer::connectedTo(path);
  ASSERT_TRUE(eventually([this] { return server->connectedClients().size() == 1; }));
  peer.send("x");
  peer.leave();
  EXPECT_TRUE(eventually([this] { return server->connectedClients().empty(); }));
}

/// The accept loop, with a queue that the test runs by hand.
class AcceptLoopStart : public testing::Test {
 protected:
  const std::shared_ptr<tests::ManualBackgroundQueue> queue =
      std::make_shared<tests::ManualBackgroundQueue>();
  TemporaryDirectory directory;
  const std::string path = directory.path("socket");
  std::shared_ptr<GDUnixSocketServer> server =
      GDUnixSocketServer::initWithSocketPath(path, 256, queue);
};

TEST_F(AcceptLoopStart, ComesOneMillisecondAfterTheListen) {
  ASSERT_TRUE(server->listenWithError());
  EXPECT_EQ(1U, queue->size());
  EXPECT_EQ(std::chrono::nanoseconds(1000000), queue->take().delay);
}

TEST_F(AcceptLoopStart, AServerDestroyedBeforeItNeverStartsIt) {
  const auto delegate = std::make_shared<RecordingServerDelegate>();
  server->setDelegate(delegate);
  ASSERT_TRUE(server->listenWithError());
  const std::weak_ptr<GDUnixSocketServer> weak = server;
  server.reset();
  EXPECT_TRUE(weak.expired()) << "the waiting loop holds it weakly";
  EXPECT_FALSE(exists(path));
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("listening", "close"));
  queue->take().task();
}

TEST_F(AcceptLoopStart, AServerClosedBeforeItDoesNotAccept) {
  ASSERT_TRUE(server->listenWithError());
  server->close();
  queue->take().task();  // returns
  server->mainLoop();    // returns too
}

TEST_F(AcceptLoopStart, ALoopOfAnEarlierListenLeavesTheNewSocketAlone) {
  ASSERT_TRUE(server->listenWithError());
  server->close();
  ASSERT_TRUE(server->listenWithError());
  const Peer peer = Peer::connectedTo(path);
  queue->take().task();
  EXPECT_EQ(1U, queue->size()) << "it accepted nothing, and so started no reader";
}

TEST_F(AcceptLoopStart, TheBacklogIsFiveByDefault) {
  const auto countOfPlaces = [this] {
    std::vector<Peer> peers;
    for (;;) {
      Peer peer(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
      const SocketAddress address(path);
      if (::connect(peer.fd, address.get(), SocketAddress::size()) != 0) return peers.size();
      peers.push_back(std::move(peer));
    }
  };
  // The system queues one more connection than the backlog.
  ASSERT_TRUE(server->listenWithError());
  EXPECT_EQ(6U, countOfPlaces());
  server->close();
  ASSERT_TRUE(server->listenWithMaxConnections(0));
  EXPECT_EQ(6U, countOfPlaces());
  server->close();
  ASSERT_TRUE(server->listenWithMaxConnections(2));
  EXPECT_EQ(3U, countOfPlaces());
}

}  // namespace
}  // namespace seldial::tests
