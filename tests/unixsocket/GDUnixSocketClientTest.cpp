#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <future>
#include <thread>

#include "tests/support/BackgroundQueueDoubles.h"
#include "tests/unixsocket/Support.h"
#include "unixsocket/GDUnixSocketClient.h"

namespace seldial::tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class GDUnixSocketClientTest : public testing::Test {
 protected:
  GDUnixSocketClientTest() { client->setDelegate(delegate); }
  ~GDUnixSocketClientTest() override { client->close(); }

  const std::shared_ptr<tests::ControlledBackgroundQueue> queue =
      std::make_shared<tests::ControlledBackgroundQueue>();
  TemporaryDirectory directory;
  const std::string path = directory.path("socket");
  const std::shared_ptr<RecordingClientDelegate> delegate =
      std::make_shared<RecordingClientDelegate>();
  std::shared_ptr<GDUnixSocketClient> client =
      GDUnixSocketClient::initWithSocketPath(path, 256, queue);
};

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

TEST_F(GDUnixSocketClientTest, ASendTimeoutEndsAConnectThatNobodyAccepts) {
  const Peer server = Peer::listeningAt(path, 0);
  const auto waiting = GDUnixSocketClient::initWithSocketPath(path);
  ASSERT_TRUE(waiting->connectWithAutoRead(false)) << "the system lets one wait";
  client->setSendTimeout(std::chrono::milliseconds(20));
  std::optional<Error> error;
  EXPECT_FALSE(client->connectWithAutoRead(false, &error));
  ASSERT_TRUE(error);
  EXPECT_EQ(-3019, error->code);
  EXPECT_NE(std::string::npos, error->localizedDescription.find("errno: 11."));
  EXPECT_EQ(-1, client->fd());
}

TEST_F(GDUnixSocketClientTest, ASendTimeoutEndsAWriteThatNobodyReads) {
  const Peer server = Peer::listeningAt(path);
  client->setSendTimeout(std::chrono::milliseconds(20));
  ASSERT_TRUE(client->connectWithAutoRead(false));
  const std::string much(8 << 20, 'x');
  std::optional<Error> error;
  const std::int64_t count = client->writeData(much, &error);
  EXPECT_GT(count, 0);
  EXPECT_LT(count, static_cast<std::int64_t>(much.size()));
  EXPECT_FALSE(error);
  EXPECT_EQ(-1, client->writeData(much, &error));
  ASSERT_TRUE(error);
  EXPECT_EQ(-3018, error->code);
}

TEST_F(GDUnixSocketClientTest, PiecesAreWrittenOneAfterAnother) {
  const Peer server = Peer::listeningAt(path);
  ASSERT_TRUE(client->connectWithAutoRead(false));
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_EQ(7, client->writeData(
                   [](const auto& take) { EXPECT_TRUE(take("mes") && take("") && take("sage")); },
                   &error));
  EXPECT_FALSE(error);
  EXPECT_EQ(0, client->writeData([](const auto& /*take*/) {}, &error));
  client->close();
  EXPECT_EQ("message", server.accepted().receiveToTheEnd());
}

TEST_F(GDUnixSocketClientTest, PiecesThatNobodyReadsAreNotTakenAfterTheSendTimeout) {
  const Peer server = Peer::listeningAt(path);
  client->setSendTimeout(std::chrono::milliseconds(20));
  ASSERT_TRUE(client->connectWithAutoRead(false));
  const std::string piece(1 << 20, 'x');
  std::int64_t taken = 0;
  const auto endless = [&](const auto& take) {
    while (take(piece)) taken += static_cast<std::int64_t>(piece.size());
  };
  std::optional<Error> error;
  const std::int64_t count = client->writeData(endless, &error);
  EXPECT_GE(count, taken);
  EXPECT_LT(count, taken + static_cast<std::int64_t>(piece.size()));
  EXPECT_FALSE(error);
  EXPECT_EQ(-1, client->writeData(endless, &error));
  ASSERT_TRUE(error);
  EXPECT_EQ(-3018, error->code);
}

TEST_F(GDUnixSocketClientTest, ASlowReaderCannotStretchTheSendTimeout) {
  const std::string much(64 << 20, 'x');
  const Peer server = Peer::listeningAt(path);
  constexpr std::chrono::milliseconds kTimeout{300};
  client->setSendTimeout(kTimeout);
  const auto begin = std::chrono::steady_clock::now();
  ASSERT_TRUE(client->connectWithAutoRead(false));
  const Peer reader = server.accepted();
  std::thread reading([&] {
    // Each read frees space, so that no single wait is as long as the timeout.
    while (!reader.receive(65536).empty()) std::this_thread::sleep_for(kTimeout / 10);
  });
  const std::int64_t count = client->writeData(much);
  const auto took = std::chrono::steady_clock::now() - begin;
  const std::int64_t later = client->writeData(much);
  client->close();
  reading.join();
  EXPECT_GT(count, 65536);
  EXPECT_LT(count, static_cast<std::int64_t>(much.size()));
  EXPECT_GE(took, kTimeout);
  EXPECT_LT(took, 20 * kTimeout) << "a busy machine is slow, but 64 MiB would take 30 s";
  EXPECT_LT(later, static_cast<std::int64_t>(much.size())) << "no more waiting";
}

TEST_F(GDUnixSocketClientTest, ASendTimeoutLetsALargeMessagePass) {
  const Peer server = Peer::listeningAt(path);
  client->setSendTimeout(kTimeLimit);
  ASSERT_TRUE(client->connectWithAutoRead(false));
  const Peer reader = server.accepted();
  const std::string much(8 << 20, 'x');
  auto read = std::async(std::launch::async, [&] { return reader.receive(much.size()).size(); });
  std::optional<Error> error = Error::gduds_errorForCode(0);
  EXPECT_EQ(static_cast<std::int64_t>(much.size()), client->writeData(much, &error));
  EXPECT_FALSE(error);
  EXPECT_EQ(much.size(), read.get());
  EXPECT_EQ(0, client->writeData(""));
}

TEST_F(GDUnixSocketClientTest, WithASendTimeoutAPeerThatLeavesIsAnError) {
  const Peer server = Peer::listeningAt(path);
  client->setSendTimeout(kTimeLimit);
  ASSERT_TRUE(client->connectWithAutoRead(false));
  server.accepted().leave();
  std::optional<Error> error;
  EXPECT_EQ(-1, client->writeData("x", &error));
  EXPECT_EQ(-3018, error->code);
  EXPECT_EQ(EPIPE, error->errorNumber);
}

TEST_F(GDUnixSocketClientTest, ACloseEndsAConnectThatWaits) {
  const Peer server = Peer::listeningAt(path, 0);
  const auto waiting = GDUnixSocketClient::initWithSocketPath(path);
  ASSERT_TRUE(waiting->connectWithAutoRead(false)) << "the system lets one wait";
  std::promise<int> connecting;
  std::optional<Error> error;
  auto connected = std::async(std::launch::async, [&] {
    connecting.set_value(threadNumber());
    return client->connectWithAutoRead(false, &error);
  });
  const int thread = connecting.get_future().get();
  ASSERT_TRUE(eventually([&] { return client->fd() != -1 && isAsleepOrGone(thread); }));
  EXPECT_TRUE(client->closeWithError());
  EXPECT_FALSE(connected.get());
  EXPECT_EQ(-3019, error->code);
  EXPECT_EQ(ECANCELED, error->errorNumber);
  EXPECT_EQ(-1, client->fd());
}

TEST_F(GDUnixSocketClientTest, AWaitingConnectContinuesWhenThereIsSpace) {
  const Peer server = Peer::listeningAt(path, 0);
  const auto waiting = GDUnixSocketClient::initWithSocketPath(path);
  ASSERT_TRUE(waiting->connectWithAutoRead(false));
  auto connected =
      std::async(std::launch::async, [this] { return client->connectWithAutoRead(false); });
  EXPECT_EQ(std::future_status::timeout, connected.wait_for(std::chrono::milliseconds(150)));
  const Peer first = server.accepted();
  EXPECT_TRUE(connected.get());
  EXPECT_EQ(1, client->writeData("x"));
  EXPECT_EQ("x", server.accepted().receive(1));
}

TEST_F(GDUnixSocketClientTest, WithoutASendTimeoutTheSocketHasNone) {
  const Peer server = Peer::listeningAt(path);
  const auto timeoutOf = [](const GDUnixSocketClient& it) {
    timeval value{};
    socklen_t size = sizeof value;
    EXPECT_EQ(0, ::getsockopt(it.fd(), SOL_SOCKET, SO_SNDTIMEO, &value, &size));
    return std::make_pair(static_cast<long>(value.tv_sec), static_cast<long>(value.tv_usec));
  };
  ASSERT_TRUE(client->connectWithAutoRead(false));
  EXPECT_EQ(std::make_pair(0L, 0L), timeoutOf(*client)) << "that of the connect is gone";
}

}  // namespace
}  // namespace seldial::tests
