// Connects and writes that have to wait, with and without a send timeout.
#include <sys/socket.h>

#include <cerrno>
#include <future>
#include <thread>

#include "tests/unixsocket/ClientTest.h"

namespace seldial::tests {
namespace {

class ClientWait : public ClientTest {};

TEST_F(ClientWait, ASendTimeoutEndsAConnectThatNobodyAccepts) {
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

TEST_F(ClientWait, ASendTimeoutEndsAWriteThatNobodyReads) {
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

TEST_F(ClientWait, PiecesThatNobodyReadsAreNotTakenAfterTheSendTimeout) {
  const Peer server = Peer::listeningAt(path);
  client->setSendTimeout(std::chrono::milliseconds(20));
  ASSERT_TRUE(client->connectWithAutoRead(false));
  const std::string piece(1 << 20, 'x');
  std::int64_t written = 0;
  const auto endless = [&](const auto& sink) {
    while (sink(piece)) written += static_cast<std::int64_t>(piece.size());
  };
  std::optional<Error> error;
  const std::int64_t count = client->writeData(endless, &error);
  EXPECT_GE(count, written);
  EXPECT_LT(count, written + static_cast<std::int64_t>(piece.size()));
  EXPECT_FALSE(error);
  EXPECT_EQ(-1, client->writeData(endless, &error));
  ASSERT_TRUE(error);
  EXPECT_EQ(-3018, error->code);
}

TEST_F(ClientWait, ASlowReaderCannotStretchTheSendTimeout) {
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
  EXPECT_LT(took, 20 * kTimeout) << "a busy machine is slow, but 64 MiB would sink 30 s";
  EXPECT_LT(later, static_cast<std::int64_t>(much.size())) << "no more waiting";
}

TEST_F(ClientWait, ASendTimeoutLetsALargeMessagePass) {
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

TEST_F(ClientWait, WithASendTimeoutAPeerThatLeavesIsAnError) {
  const Peer server = Peer::listeningAt(path);
  client->setSendTimeout(kTimeLimit);
  ASSERT_TRUE(client->connectWithAutoRead(false));
  server.accepted().leave();
  std::optional<Error> error;
  EXPECT_EQ(-1, client->writeData("x", &error));
  EXPECT_EQ(-3018, error->code);
  EXPECT_EQ(EPIPE, error->errorNumber);
}

TEST_F(ClientWait, ACloseEndsAConnectThatWaits) {
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

TEST_F(ClientWait, AWaitingConnectContinuesWhenThereIsSpace) {
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

TEST_F(ClientWait, WithoutASendTimeoutTheSocketHasNone) {
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
