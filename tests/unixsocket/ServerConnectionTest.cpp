// Connections of a server: reading, sending, and the table.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

#include <future>

#include "tests/unixsocket/ListeningServer.h"

namespace seldial::tests {
namespace {

using testing::ElementsAre;
using ServerConnection = ListeningServer;

TEST_F(ServerConnection, SixHundredBytesAreThreeDataCallbacksThenOneDisconnect) {
  listen();
  Peer peer = Peer::connectedTo(path);
  peer.send(std::string(600, 'x'));
  peer.leave();
  ASSERT_TRUE(delegate->journal.waitFor("disconnect"));
  EXPECT_THAT(delegate->journal.lines(),
              ElementsAre("listening", "accept", "data 256", "data 256", "data 88", "disconnect"));
  EXPECT_EQ(std::string(600, 'x'), delegate->received());
  EXPECT_TRUE(eventually([this] { return server->connectedClients().empty(); }));
}

TEST_F(ServerConnection, ConnectionsReadByTheDefaultSizeWhateverTheServersOwn) {
  server = GDUnixSocketServer::initWithSocketPath(path, 1000, queue);
  server->setDelegate(delegate);
  listen();
  const Peer peer = connect();
  peer.send(std::string(300, 'x'));
  EXPECT_TRUE(delegate->journal.waitFor("data 44"));
  EXPECT_EQ(1U, delegate->journal.count("data 256"));
  EXPECT_EQ(256U, server->connectedClients().begin()->second->fragmentSize());
}

TEST_F(ServerConnection, IsAPlainSocketInTheTableUnderItsIdentifier) {
  listen();
  const Peer peer = connect();
  const auto table = server->connectedClients();
  ASSERT_EQ(1U, table.size());
  const auto& [clientID, connection] = *table.begin();
  EXPECT_EQ(lastClientID(), clientID);
  EXPECT_EQ(clientID, connection->uniqueID());
  EXPECT_EQ("(dummy)", connection->socketPath());
  EXPECT_EQ(0U, connection->state());
  EXPECT_EQ(FD_CLOEXEC, ::fcntl(connection->fd(), F_GETFD));
  EXPECT_TRUE(server->clientExists(connection));
}

TEST_F(ServerConnection, CallbacksRunOnTheLoopsThreads) {
  std::promise<std::thread::id> accepting;
  std::promise<std::thread::id> reading;
  std::promise<std::thread::id> leaving;
  delegate->onAccept = [&](auto&, auto&) { accepting.set_value(std::this_thread::get_id()); };
  delegate->onData = [&](auto&, auto&) { reading.set_value(std::this_thread::get_id()); };
  delegate->onDisconnect = [&](auto&, auto&) { leaving.set_value(std::this_thread::get_id()); };
  listen();
  Peer peer = connect();
  peer.send("x");
  peer.leave();
  const auto acceptThread = accepting.get_future().get();
  const auto readerThread = reading.get_future().get();
  EXPECT_NE(acceptThread, readerThread);
  EXPECT_NE(acceptThread, std::this_thread::get_id());
  EXPECT_NE(readerThread, std::this_thread::get_id());
  EXPECT_EQ(readerThread, leaving.get_future().get());
}

TEST_F(ServerConnection, IsStillInTheTableWhenItsDisconnectIsReported) {
  std::promise<std::size_t> told;
  delegate->onDisconnect = [&told](GDUnixSocketServer& it, auto&) {
    told.set_value(it.connectedClients().size());
  };
  listen();
  connect().leave();
  EXPECT_EQ(1U, told.get_future().get());
}

TEST_F(ServerConnection, ABlockedReaderHoldsUpNoOther) {
  std::promise<void> release;
  const std::shared_future<void> released = release.get_future().share();
  delegate->onData = [&](auto&, const std::string& clientID) {
    if (clientID == delegate->clientIDs().front()) released.wait();
  };
  listen();
  const Peer blocked = connect();
  blocked.send("x");
  Peer other = connect();
  other.send("12");
  other.leave();
  EXPECT_TRUE(delegate->journal.waitFor("disconnect"));
  EXPECT_EQ(0U, delegate->journal.count("data 1"));
  release.set_value();
  EXPECT_TRUE(delegate->journal.waitFor("data 1"));
}

TEST_F(ServerConnection, AReadFailureIsReportedAndClosesOnlyThatConnection) {
  listen();
  const Peer staying = connect();
  Peer leaving = connect();
  // A peer that disconnects with unread bytes resets the connection.
  ASSERT_EQ(1, server->sendData("x", lastClientID()));
  leaving.leave();
  EXPECT_TRUE(delegate->journal.waitFor("read failed -3017"));
  EXPECT_TRUE(eventually([this] { return server->connectedClients().size() == 1; }));
  EXPECT_EQ(0U, delegate->journal.count("disconnect"));
  const Peer later = connect();
  staying.send("still here");
  EXPECT_TRUE(delegate->journal.waitFor("data 10"));
}

TEST_F(ServerConnection, SendsToOneByItsIdentifier) {
  listen();
  const Peer first = connect();
  const std::string firstID = lastClientID();
  const Peer second = connect();
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_EQ(5, server->sendData("first", firstID, &error));
  EXPECT_FALSE(error);
  EXPECT_EQ(6, server->sendData("second", lastClientID()));
  EXPECT_EQ("first", first.receive(5));
  EXPECT_EQ("second", second.receive(6));
}

TEST_F(ServerConnection, SendingToAnUnknownIdentifierFails) {
  listen();
  std::optional<Error> error;
  EXPECT_EQ(-1, server->sendData("x", "nobody", &error));
  ASSERT_TRUE(error);
  EXPECT_EQ(-3015, error->code);
  EXPECT_EQ("Unknown client. It is either disconnected or never existed. Client ID: nobody",
            error->localizedDescription);
  EXPECT_EQ(-1, server->sendData("x", "nobody"));
  EXPECT_EQ(-1, server->sendData("", "nobody")) << "known first, empty second";
}

TEST_F(ServerConnection, SendingEmptyDataToAKnownConnectionWritesNothing) {
  listen();
  const Peer peer = connect();
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_EQ(0, server->sendData("", lastClientID(), &error));
  EXPECT_FALSE(error);
  EXPECT_EQ(1, server->sendData("y", lastClientID()));
  EXPECT_EQ("y", peer.receive(1));
}

TEST_F(ServerConnection, ASendThatFailsIsAWriteFailure) {
  listen();
  const auto [socket, peer] = makePair();
  ::shutdown(socket->fd(), SHUT_WR);
  server->addClient(socket);
  std::optional<Error> error;
  EXPECT_EQ(-1, server->sendData("x", socket->uniqueID(), &error));
  ASSERT_TRUE(error);
  EXPECT_EQ(-3018, error->code);
  EXPECT_EQ(-1, server->sendData("x", socket->uniqueID()));
}

TEST_F(ServerConnection, SendsInTheBackgroundAndCompletesThere) {
  listen();
  const Peer peer = connect();
  std::promise<std::pair<std::int64_t, std::thread::id>> told;
  server->sendData("hello", lastClientID(), [&told](const auto& error, std::int64_t count) {
    EXPECT_FALSE(error);
    told.set_value({count, std::this_thread::get_id()});
  });
  const auto [count, thread] = told.get_future().get();
  EXPECT_EQ(5, count);
  EXPECT_NE(std::this_thread::get_id(), thread);
  EXPECT_EQ("hello", peer.receive(5));
}

TEST_F(ServerConnection, ABackgroundSendReportsItsErrorAndTheCompletionIsOptional) {
  listen();
  std::promise<std::optional<Error>> told;
  server->sendData("x", "nobody", GDUnixSocket::WriteCompletion());
  server->sendData("x", "nobody", [&told](const auto& error, std::int64_t count) {
    EXPECT_EQ(-1, count);
    told.set_value(error);
  });
  EXPECT_EQ(-3015, told.get_future().get()->code);
}

TEST_F(ServerConnection, TheServerItselfIsNeverWritten) {
  listen();
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_EQ(0, server->writeData("x", &error));
  EXPECT_FALSE(error);
  EXPECT_EQ(0, server->writeData("x"));
  std::promise<std::int64_t> told;
  server->writeData("x", [&told](const auto& none, std::int64_t count) {
    EXPECT_FALSE(none);
    told.set_value(count);
  });
  EXPECT_EQ(0, told.get_future().get());
}

TEST_F(ServerConnection, AnEmptyClientIsABrokenInvariant) {
  try {
    server->addClient(nullptr);
    FAIL() << "no exception";
  } catch (const InternalInconsistencyException& exception) {
    EXPECT_STREQ("Cannot add empty client", exception.what());
  }
}

TEST_F(ServerConnection, TheTableKnowsWhatItHolds) {
  auto [socket, peer] = makePair();
  EXPECT_FALSE(server->clientExists(socket));
  EXPECT_FALSE(server->clientExists(nullptr));
  server->addClient(socket);
  server->addClient(socket);
  EXPECT_EQ(1U, server->connectedClients().size());
  EXPECT_TRUE(server->clientExists(socket));
  EXPECT_FALSE(server->removeAndCloseClient(socket));
  EXPECT_FALSE(server->clientExists(socket));
  EXPECT_EQ(2U, socket->state());
  EXPECT_EQ("", peer.receiveToTheEnd());
  EXPECT_FALSE(server->removeAndCloseClient(socket)) << "it is gone: no error";
  EXPECT_FALSE(server->removeAndCloseClient(nullptr));
}

TEST_F(ServerConnection, RemovingReturnsTheErrorOfTheClose) {
  const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
  server->addClient(socket);
  EXPECT_EQ(Error::gduds_errorForCode(-3016, "Bad socket"), server->removeAndCloseClient(socket));
  EXPECT_FALSE(server->clientExists(socket));
}

TEST_F(ServerConnection, AReaderOfAConnectionThatIsNotInTheTableEndsAtOnce) {
  const auto [socket, peer] = makePair();
  peer.send("x");
  server->readOnConnection(socket);
  EXPECT_EQ("x", socket->readWithError());
}

TEST_F(ServerConnection, RemovingItInACallbackEndsItsReaderSilently) {
  delegate->onData = [](GDUnixSocketServer& it, const std::string& clientID) {
    it.removeAndCloseClient(it.connectedClients().at(clientID));
  };
  listen();
  const Peer peer = connect();
  peer.send("x");
  EXPECT_EQ("", peer.receiveToTheEnd());
  ASSERT_TRUE(delegate->journal.waitFor("data 1"));
  server->closeSilently();
  queue->waitUntilIdle();
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("listening", "accept", "data 1"));
}

TEST_F(ServerConnection, AcceptCallbacksMaySendAndClose) {
  std::promise<std::int64_t> sent;
  delegate->onAccept = [&sent](GDUnixSocketServer& it, const std::string& clientID) {
    sent.set_value(it.sendData("welcome", clientID));
    it.close();
  };
  listen();
  const Peer peer = Peer::connectedTo(path);
  EXPECT_EQ("welcome", peer.receiveToTheEnd());
  EXPECT_EQ(7, sent.get_future().get());
  queue->waitUntilIdle();
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("listening", "close", "accept"));
}

}  // namespace
}  // namespace seldial::tests
