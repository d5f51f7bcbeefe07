// Calls of the library when a system call fails.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tests/unixsocket/ListeningServer.h"
#include "tests/unixsocket/SystemCalls.h"

namespace seldial::tests {
namespace {

using testing::ElementsAre;

std::string info(int descriptor, int error) {
  return ". fd: " + std::to_string(descriptor) + ". errno: " + std::to_string(error) + ". " +
         std::strerror(error);
}

TEST(Fault, AReadThatFailsIsNotTriedAgain) {
  for (const int error : {EINTR, EAGAIN, ECONNRESET}) {
    const auto [socket, peer] = makePair();
    peer.send("x");
    SystemCalls calls;
    SystemCalls::set(failing("read", error, 0, 1));
    std::optional<Error> told;
    EXPECT_FALSE(socket->readWithError(&told));
    ASSERT_TRUE(told);
    EXPECT_EQ(-3017, told->code);
    EXPECT_EQ(error, told->errorNumber);
    EXPECT_EQ("Failed to read from socket" + info(socket->fd(), error), told->localizedDescription);
    EXPECT_EQ("x", socket->readWithError()) << "the socket stays open";
  }
}

TEST(Fault, AWriteThatFailsIsNotTriedAgain) {
  for (const int error : {EINTR, EAGAIN, EPIPE, ECONNRESET, ENOSPC}) {
    const auto [socket, peer] = makePair();
    SystemCalls calls;
    SystemCalls::set(failing("write", error, 0, 1));
    std::optional<Error> told;
    EXPECT_EQ(-1, socket->writeData("x", &told));
    ASSERT_TRUE(told);
    EXPECT_EQ(-3018, told->code);
    EXPECT_EQ(error, told->errorNumber);
    EXPECT_EQ("Failed to write to socket" + info(socket->fd(), error), told->localizedDescription);
    EXPECT_EQ(1, socket->writeData("y"));
    EXPECT_EQ("y", peer.receive(1));
  }
}

TEST(Fault, AShortWriteIsReturned) {
  const auto [socket, peer] = makePair();
  SystemCalls calls;
  SystemCalls::limitWrites(3);
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_EQ(3, socket->writeData("hello", &error));
  EXPECT_FALSE(error);
  EXPECT_EQ("hel", peer.receive(3));
}

TEST(Fault, AShortWriteOfASendIsReturned) {
  const auto server = GDUnixSocketServer::initWithSocketPath("/tmp/b");
  const auto [socket, peer] = makePair();
  server->addClient(socket);
  SystemCalls calls;
  SystemCalls::limitWrites(3);
  EXPECT_EQ(3, server->sendData("hello", socket->uniqueID()));
  EXPECT_EQ("hel", peer.receive(3));
}

TEST(Fault, ADescriptorWhoseCloseFailsIsForgotten) {
  const auto [socket, peer] = makePair();
  const int descriptor = socket->fd();
  std::optional<Error> error;
  {
    SystemCalls calls;
    SystemCalls::set(failing("close", EIO));
    EXPECT_FALSE(socket->closeWithError(&error));
  }
  EXPECT_EQ(-3016, error->code);
  EXPECT_EQ(EIO, error->errorNumber);
  EXPECT_EQ("Failed to close socket" + info(descriptor, EIO), error->localizedDescription);
  EXPECT_EQ(-1, socket->fd());
  EXPECT_EQ(0U, socket->state());
  EXPECT_FALSE(socket->closeWithError(&error));
  EXPECT_EQ("Failed to close socket. Bad socket", error->localizedDescription);
  ::close(descriptor);
}

/// A listen in which one system call fails.
class FaultyListen : public ListeningServer {
 protected:
  std::string errorOfListen(const std::string& name, int error) {
    SystemCalls::set(failing(name, error));
    std::optional<Error> told;
    EXPECT_FALSE(server->listenWithError(&told));
    SystemCalls::set({});
    if (!told) return "";
    EXPECT_NE(std::string::npos,
              told->localizedDescription.find("errno: " + std::to_string(told->errorNumber) + "."));
    return std::to_string(told->code) + " " + told->localizedDescription;
  }

  SystemCalls calls;
};

TEST_F(FaultyListen, WithoutASocketNothingIsClosed) {
  EXPECT_EQ("-3024 Bad socket" + info(-1, EMFILE), errorOfListen("socket", EMFILE));
  EXPECT_EQ(0U, server->state());
  EXPECT_EQ(-1, server->fd());
  listen();
  connect();
}

TEST_F(FaultyListen, AFailedBindIsReportedAfterTheCloseWithoutADescriptor) {
  // The close found no file; its errno is the one that remains.
  EXPECT_EQ("-3023 Failed to bind socket" + info(-1, ENOENT), errorOfListen("bind", EACCES));
  EXPECT_EQ(2U, server->state());
  EXPECT_EQ(-1, server->fd());
  EXPECT_TRUE(delegate->journal.lines().empty()) << "closed silently";
  listen();
  connect();
}

TEST_F(FaultyListen, AFailedListenIsReportedAfterTheCloseAndLeavesNoFile) {
  EXPECT_EQ("-3022 Failed to listen on socket" + info(-1, EOPNOTSUPP),
            errorOfListen("listen", EOPNOTSUPP));
  EXPECT_FALSE(exists(path));
  EXPECT_EQ(2U, server->state());
  EXPECT_EQ(-1, server->fd());
  EXPECT_TRUE(delegate->journal.lines().empty());
}

TEST_F(FaultyListen, AStaleFileThatCannotBeRemovedMakesBindFail) {
  { const Peer dead = Peer::listeningAt(path); }
  EXPECT_EQ("-3023 Failed to bind socket" + info(-1, EADDRINUSE), errorOfListen("unlink", EACCES));
  EXPECT_EQ(2U, server->state());
  EXPECT_EQ(-1, server->fd());
  EXPECT_TRUE(exists(path)) << "it is not this server's file";
  listen();
  connect();
}

TEST_F(FaultyListen, AFailedListenWhoseFileCannotBeRemovedKeepsTheSocket) {
  const auto listenFails = failing("listen", EOPNOTSUPP);
  const auto unlinkFails = failing("unlink", EACCES);
  SystemCalls::set([&](const SystemCall& call) {
    const auto error = listenFails(call);
    return error ? error : unlinkFails(call);
  });
  std::optional<Error> error;
  EXPECT_FALSE(server->listenWithError(&error));
  SystemCalls::set({});
  // Here too, a close that cannot remove the file does not change the socket.
  EXPECT_NE(-1, server->fd());
  EXPECT_EQ("Failed to listen on socket" + info(server->fd(), EACCES), error->localizedDescription);
  EXPECT_EQ(0U, server->state());
  listen();
  connect();
}

TEST_F(FaultyListen, AFileThatCannotBeExaminedIsNotRemoved) {
  { const Peer dead = Peer::listeningAt(path); }
  EXPECT_EQ("-3023 Failed to bind socket" + info(-1, EACCES), errorOfListen("stat", EACCES));
  EXPECT_TRUE(exists(path));
}

using FaultyServer = FaultyListen;

TEST_F(FaultyServer, AFileThatCannotBeRemovedKeepsItListening) {
  listen();
  connect();
  SystemCalls::set(failing("unlink", EACCES));
  std::optional<Error> error;
  EXPECT_FALSE(server->closeWithError(&error));
  EXPECT_FALSE(server->closeWithError(nullptr));
  EXPECT_FALSE(server->closeSilently());
  ASSERT_TRUE(error);
  EXPECT_EQ(-3020, error->code);
  EXPECT_EQ(EACCES, error->errorNumber);
  EXPECT_EQ("Failed to unlink socket" + info(server->fd(), EACCES), error->localizedDescription);
  EXPECT_EQ(2U, delegate->journal.count("close " + error->localizedDescription));
  EXPECT_TRUE(server->connectedClients().empty()) << "the connections are gone all the same";
  EXPECT_EQ(3U, server->state());
  SystemCalls::set({});
  connect();
  EXPECT_TRUE(server->closeWithError(&error));
  EXPECT_FALSE(error);
}

TEST_F(FaultyServer, AFailingCloseIsReportedAndReturned) {
  listen();
  const int descriptor = server->fd();
  SystemCalls::set(failing("close", EIO, 0, 1));
  std::optional<Error> error;
  EXPECT_FALSE(server->closeWithError(&error));
  EXPECT_EQ("Failed to close socket" + info(descriptor, EIO), error->localizedDescription);
  EXPECT_EQ(1U, delegate->journal.count("close " + error->localizedDescription));
  EXPECT_EQ(-1, server->fd());
  EXPECT_EQ(3U, server->state()) << "a failed close leaves the state";
  EXPECT_FALSE(exists(path));
  ::close(descriptor);
}

TEST_F(FaultyServer, AnAcceptThatFailsEndsItOnceAndItCanListenAgain) {
  for (const int error : {EMFILE, ENFILE, ECONNABORTED, EINTR, EAGAIN, ENOMEM}) {
    delegate->journal.clear();
    SystemCalls::set(failing("accept", error, 1));
    listen();
    const std::string descriptor = info(server->fd(), error);
    const Peer peer = Peer::connectedTo(path);
    queue->waitUntilIdle();
    EXPECT_THAT(
        delegate->journal.lines(),
        ElementsAre("listening", "accept",
                    "accept failed Failed to accept connection, closing socket" + descriptor,
                    "close"));
    EXPECT_EQ(2U, server->state());
    EXPECT_EQ("", peer.receiveToTheEnd());
  }
  SystemCalls::set({});
  listen();
  connect();
}

TEST_F(FaultyServer, AnAcceptFailureNeedsNoDelegate) {
  server->setDelegate({});
  SystemCalls::set(failing("accept", EMFILE));
  listen();
  queue->waitUntilIdle();
  EXPECT_EQ(2U, server->state());
}

TEST_F(FaultyServer, AReadFailureIsReportedOnceAndOtherConnectionsContinue) {
  listen();
  const Peer first = connect();
  const int spared = server->connectedClients().begin()->second->fd();
  SystemCalls::set([spared](const SystemCall& call) {
    const bool fails = call.name == "read" && call.descriptor != spared;
    return fails ? std::optional<int>(ECONNRESET) : std::nullopt;
  });
  const Peer second = connect();
  EXPECT_TRUE(delegate->journal.waitFor("read failed -3017"));
  EXPECT_EQ("", second.receiveToTheEnd());
  first.send("x");
  EXPECT_TRUE(delegate->journal.waitFor("data 1"));
  EXPECT_EQ(1U, delegate->journal.count("read failed -3017"));
  EXPECT_TRUE(eventually([this] { return server->connectedClients().size() == 1; }));
}

TEST_F(FaultyServer, RemovingAConnectionReturnsTheErrorOfItsClose) {
  const auto [socket, peer] = makePair();
  const int descriptor = socket->fd();
  server->addClient(socket);
  SystemCalls::set(failing("close", EIO, 0, 1));
  EXPECT_EQ("Failed to close socket" + info(descriptor, EIO),
            server->removeAndCloseClient(socket)->localizedDescription);
  EXPECT_FALSE(server->clientExists(socket));
  ::close(descriptor);
}

class FaultyClient : public testing::Test {
 protected:
  TemporaryDirectory directory;
  const std::string path = directory.path("socket");
  const Peer server = Peer::listeningAt(path);
  const std::shared_ptr<RecordingClientDelegate> delegate =
      std::make_shared<RecordingClientDelegate>();
  const std::shared_ptr<tests::ControlledBackgroundQueue> queue =
      std::make_shared<tests::ControlledBackgroundQueue>();
  const std::shared_ptr<GDUnixSocketClient> client =
      GDUnixSocketClient::initWithSocketPath(path, 256, queue);
  SystemCalls calls;
};

TEST_F(FaultyClient, WithoutASocketItStaysIdle) {
  SystemCalls::set(failing("socket", EMFILE));
  std::optional<Error> error;
  EXPECT_FALSE(client->connectWithAutoRead(true, &error));
  EXPECT_EQ(Error::gduds_errorForCode(-3024, info(-1, EMFILE).substr(2)), error);
  EXPECT_EQ(0U, client->state());
  EXPECT_EQ(-1, client->fd());
}

TEST_F(FaultyClient, AFailedConnectIsReportedWithTheErrnoBeforeTheClose) {
  for (const int error : {EINTR, EAGAIN, EACCES, ECONNREFUSED}) {
    const int descriptor = ::dup(0);
    ::close(descriptor);
    const auto refuse = failing("connect", error);
    SystemCalls::set([refuse](const SystemCall& call) {
      if (call.name == "close") errno = EIO;  // the close is not reported
      return refuse(call);
    });
    std::optional<Error> told;
    EXPECT_FALSE(client->connectWithAutoRead(false, &told));
    EXPECT_EQ("Failed to connect to socket" + info(descriptor, error), told->localizedDescription);
    EXPECT_EQ(error, told->errorNumber);
    EXPECT_EQ(-1, client->fd());
    EXPECT_EQ(2U, client->state());
  }
}

TEST_F(FaultyClient, WithASendTimeoutAnInterruptedConnectIsTriedAgain) {
  client->setSendTimeout(kTimeLimit);
  SystemCalls::set(failing("connect", EINTR, 0, 2));
  EXPECT_TRUE(client->connectWithAutoRead(false));
  client->close();
  client->setSendTimeout(std::chrono::milliseconds(20));
  SystemCalls::set(failing("connect", EINTR));
  std::optional<Error> error;
  EXPECT_FALSE(client->connectWithAutoRead(false, &error));
  EXPECT_EQ(EINTR, error->errorNumber);
}

TEST_F(FaultyClient, AFailingReadLoopReportsOnceAndCloses) {
  client->setDelegate(delegate);
  SystemCalls::set(failing("read", EAGAIN));
  ASSERT_TRUE(client->connectWithAutoRead(true));
  queue->waitUntilIdle();
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("failed -3017"));
  EXPECT_EQ(2U, client->state());
}

}  // namespace
}  // namespace seldial::tests
