#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <future>

#include "tests/unixsocket/ClientTest.h"

namespace seldial::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GDUnixSocketClientTest : public ClientTest {};

TEST_F(GDUnixSocketClientTest, ThePathRulesAreThoseOfTheBaseClass) {
  EXPECT_FALSE(GDUnixSocketClient::init());
  EXPECT_FALSE(GDUnixSocketClient::initWithSocketPath("socket"));
  EXPECT_FALSE(GDUnixSocketClient::initWithSocketPath("/" + std::string(103, 's')));
  EXPECT_EQ(256U, client->fragmentSize());
  EXPECT_EQ(9U, GDUnixSocketClient::initWithSocketPath(path, 9)->fragmentSize());
  EXPECT_EQ(0U, client->state());
  EXPECT_EQ(-1, client->fd());
}

TEST_F(GDUnixSocketClientTest, ConnectsWritesAndCloses) {
  const Peer server = Peer::listeningAt(path);
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_TRUE(client->connectWithAutoRead(false, &error));
  EXPECT_FALSE(error);
  EXPECT_EQ(1U, client->state());
  EXPECT_EQ(FD_CLOEXEC, ::fcntl(client->fd(), F_GETFD));
  EXPECT_EQ(7, client->writeData("message"));
  EXPECT_TRUE(client->closeWithError());
  EXPECT_EQ(2U, client->state());
  EXPECT_EQ("message", server.accepted().receiveToTheEnd());
}

TEST_F(GDUnixSocketClientTest, ConnectingWithoutAListenerFailsAndNamesTheDescriptor) {
  const std::string descriptor = std::to_string(::dup(0));
  ::close(std::stoi(descriptor));
  std::optional<Error> error;
  EXPECT_FALSE(client->connectWithAutoRead(false, &error));
  ASSERT_TRUE(error);
  EXPECT_EQ(-3019, error->code);
  EXPECT_EQ(
      "Failed to connect to socket. fd: " + descriptor + ". errno: 2. No such file or directory",
      error->localizedDescription);
  EXPECT_EQ(-1, client->fd());
  EXPECT_EQ(2U, client->state());
  EXPECT_FALSE(client->connectWithAutoRead(true, nullptr));
  EXPECT_THAT(delegate->journal.lines(), IsEmpty());
}

TEST_F(GDUnixSocketClientTest, ConnectingToADeadSocketIsRefused) {
  { const Peer dead = Peer::listeningAt(path); }
  std::optional<Error> error;
  EXPECT_FALSE(client->connectWithAutoRead(false, &error));
  EXPECT_NE(std::string::npos, error->localizedDescription.find("errno: 111. Connection refused"));
}

TEST_F(GDUnixSocketClientTest, AFailedConnectLeavesNoDescriptorOpen) {
  const std::size_t before = openDescriptors();
  for (int i = 0; i < 10; ++i) EXPECT_FALSE(client->connectWithAutoRead(false));
  EXPECT_EQ(before, openDescriptors());
}

TEST_F(GDUnixSocketClientTest, APathThatAnAddressCannotHoldIsInconsistent) {
  const Peer server = Peer::listeningAt(path);
  client = GDUnixSocketClient::initWithSocketPath(path + std::string("\0x", 2));
  ASSERT_TRUE(client);
  std::optional<Error> error;
  EXPECT_FALSE(client->connectWithAutoRead(false, &error));
  EXPECT_EQ(Error::gduds_errorForCode(-3022, "The socket path is inconsistent"), error);
  EXPECT_EQ(-1, client->fd());
  EXPECT_EQ(2U, client->state());
  EXPECT_FALSE(client->connectWithAutoRead(false, nullptr));
}

TEST_F(GDUnixSocketClientTest, WritingWithoutAConnectionIsABadSocket) {
  std::optional<Error> error;
  EXPECT_EQ(-1, client->writeData("x", &error));
  EXPECT_EQ(Error::gduds_errorForCode(-3024), error);
}

TEST_F(GDUnixSocketClientTest, WithAutoReadThreeHundredBytesAre256And44ThenAClosedClient) {
  const Peer server = Peer::listeningAt(path);
  Peer connection(-1);
  ASSERT_TRUE(client->connectWithAutoRead(true));
  {
    const Peer accepted = server.accepted();
    accepted.send(std::string(300, 'x'));
  }
  queue->waitUntilIdle();
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("data 256", "data 44"));
  EXPECT_EQ(2U, client->state());
  EXPECT_EQ(-1, client->fd());
}

TEST_F(GDUnixSocketClientTest, WithoutAutoReadNothingIsReadUnlessRequested) {
  const Peer server = Peer::listeningAt(path);
  ASSERT_TRUE(client->connectWithAutoRead(false));
  Peer accepted = server.accepted();
  accepted.send("hello");
  queue->waitUntilIdle();
  EXPECT_THAT(delegate->journal.lines(), IsEmpty());
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_EQ("hello", client->readWithError(&error));
  EXPECT_FALSE(error);
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("data 5"));

  accepted.leave();
  EXPECT_FALSE(client->readWithError(&error));
  EXPECT_FALSE(error);
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("data 5")) << "the end has no callback";
  EXPECT_EQ(1U, client->state()) << "only the loop closes by itself";
}

TEST_F(GDUnixSocketClientTest, AFailingReadIsReportedAndReturned) {
  std::optional<Error> error;
  EXPECT_FALSE(client->readWithError(&error));
  EXPECT_EQ(-3017, error->code);
  EXPECT_FALSE(client->readWithError(nullptr));
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("failed -3017", "failed -3017"));
}

TEST_F(GDUnixSocketClientTest, ABackgroundReadAlsoCallsTheDelegate) {
  const Peer server = Peer::listeningAt(path);
  ASSERT_TRUE(client->connectWithAutoRead(false));
  server.accepted().send("hello");
  std::promise<std::optional<Data>> told;
  client->readWithCompletion([&told](const auto&, const auto& data) { told.set_value(data); });
  EXPECT_EQ("hello", told.get_future().get());
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("data 5"));
}

TEST_F(GDUnixSocketClientTest, AReadFailureInTheLoopIsReportedOnceAndClosesTheClient) {
  const Peer server = Peer::listeningAt(path);
  ASSERT_TRUE(client->connectWithAutoRead(false));
  Peer accepted = server.accepted();
  client->writeData("never read");
  accepted.leave();  // with unread bytes: the connection is reset
  client->readLoop();
  queue->waitUntilIdle();
  EXPECT_THAT(delegate->journal.lines(), ElementsAre("failed -3017"));
  EXPECT_EQ(2U, client->state());
}

TEST_F(GDUnixSocketClientTest, TheLoopKeepsTheClientAndNotTheDelegate) {
  const Peer server = Peer::listeningAt(path);
  auto vanishing = std::make_shared<RecordingClientDelegate>();
  client->setDelegate(vanishing);
  EXPECT_EQ(vanishing, client->delegate());
  ASSERT_TRUE(client->connectWithAutoRead(true));
  const std::weak_ptr<GDUnixSocketClient> weak = client;
  client = GDUnixSocketClient::initWithSocketPath(path);
  Peer accepted = server.accepted();
  accepted.send("x");
  ASSERT_TRUE(vanishing->journal.waitFor("data 1"));
  vanishing.reset();
  accepted.send("y");
  EXPECT_FALSE(weak.expired());
  accepted.leave();
  queue->waitUntilIdle();
  EXPECT_TRUE(weak.expired());
}

TEST_F(GDUnixSocketClientTest, ALoopEndsWhenItsClientIsClosed) {
  const Peer server = Peer::listeningAt(path);
  ASSERT_TRUE(client->connectWithAutoRead(true));
  Peer accepted = server.accepted();
  accepted.send("x");
  ASSERT_TRUE(delegate->journal.waitFor("data 1"));
  client->close();
  EXPECT_EQ("", accepted.receiveToTheEnd());
  queue->waitUntilIdle();
  EXPECT_EQ(2U, client->state());
}

TEST_F(GDUnixSocketClientTest, ConnectingWithACompletionDoesNothing) {
  const Peer server = Peer::listeningAt(path);
  bool called = false;
  client->connectWithAutoRead(true, [&called](const auto&) { called = true; });
  queue->waitUntilIdle();
  EXPECT_FALSE(called);
  EXPECT_EQ(-1, client->fd());
  EXPECT_EQ(0U, client->state());
}

TEST_F(GDUnixSocketClientTest, ConnectsAgainAfterAClose) {
  const Peer server = Peer::listeningAt(path);
  for (int round = 0; round < 3; ++round) {
    ASSERT_TRUE(client->connectWithAutoRead(false));
    EXPECT_EQ(1U, client->state());
    EXPECT_EQ(1, client->writeData("x"));
    EXPECT_TRUE(client->closeWithError());
    EXPECT_EQ("x", server.accepted().receiveToTheEnd());
  }
}

TEST_F(GDUnixSocketClientTest, TheLoopOfAnEarlierConnectionLeavesTheNewOneAlone) {
  const Peer server = Peer::listeningAt(path);
  std::promise<void> inCallback;
  std::promise<void> release;
  delegate->onData = [&](GDUnixSocketClient&) {
    inCallback.set_value();
    release.get_future().wait();
  };
  ASSERT_TRUE(client->connectWithAutoRead(true));
  server.accepted().send("x");
  inCallback.get_future().wait();
  client->close();
  ASSERT_TRUE(client->connectWithAutoRead(false));
  const Peer second = server.accepted();
  second.send("for the second reader");
  release.set_value();
  queue->waitUntilIdle();
  EXPECT_EQ(1U, client->state());
  EXPECT_EQ("for the second reader", client->readFromSocket(client->fd()));
}

TEST_F(GDUnixSocketClientTest, ConnectingTwiceClosesTheFirstConnection) {
  const Peer server = Peer::listeningAt(path);
  ASSERT_TRUE(client->connectWithAutoRead(false));
  const Peer first = server.accepted();
  ASSERT_TRUE(client->connectWithAutoRead(false));
  EXPECT_EQ("", first.receiveToTheEnd());
  EXPECT_EQ(1, client->writeData("x"));
  EXPECT_EQ("x", server.accepted().receive(1));
}

TEST_F(GDUnixSocketClientTest, PiecesAreWrittenOneAfterAnother) {
  const Peer server = Peer::listeningAt(path);
  ASSERT_TRUE(client->connectWithAutoRead(false));
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_EQ(7, client->writeData(
                   [](const auto& sink) { EXPECT_TRUE(sink("mes") && sink("") && sink("sage")); },
                   &error));
  EXPECT_FALSE(error);
  EXPECT_EQ(0, client->writeData([](const auto& /*sink*/) {}, &error));
  client->close();
  EXPECT_EQ("message", server.accepted().receiveToTheEnd());
}

}  // namespace
}  // namespace seldial::tests
