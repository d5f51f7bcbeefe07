// The variants that run on the background queue, and calls that are ended by other threads.
#include <gtest/gtest.h>
#include <unistd.h>

#include <future>
#include <thread>

#include "tests/support/BackgroundQueueDoubles.h"
#include "tests/unixsocket/Support.h"

namespace seldial::tests {
namespace {

using Queue = tests::ControlledBackgroundQueue;
using HeldQueue = tests::ManualBackgroundQueue;

TEST(Asynchronous, ReadGivesTheDataOnAnotherThread) {
  const auto queue = std::make_shared<Queue>();
  const auto [socket, peer] = makePair(256, queue);
  std::promise<std::pair<std::optional<Data>, std::thread::id>> told;
  socket->readWithCompletion([&told](const auto& error, const auto& data) {
    EXPECT_FALSE(error);
    told.set_value({data, std::this_thread::get_id()});
  });
  peer.send("hello");
  const auto [data, thread] = told.get_future().get();
  EXPECT_EQ("hello", data);
  EXPECT_NE(std::this_thread::get_id(), thread);
}

TEST(Asynchronous, ReadGivesTheErrorOrTheEndOfTheStream) {
  const auto queue = std::make_shared<HeldQueue>();
  auto [socket, peer] = makePair(256, queue);
  int calls = 0;
  peer.leave();
  socket->readWithCompletion([&calls](const auto& error, const auto& data) {
    ++calls;
    EXPECT_FALSE(error);
    EXPECT_FALSE(data);
  });
  queue->take().task();
  socket->close();
  socket->readWithCompletion([&calls](const auto& error, const auto& data) {
    ++calls;
    EXPECT_EQ(-3017, error->code);
    EXPECT_FALSE(data);
  });
  queue->take().task();
  EXPECT_EQ(2, calls);
}

TEST(Asynchronous, WriteGivesTheCountOnAnotherThread) {
  const auto queue = std::make_shared<Queue>();
  const auto [socket, peer] = makePair(256, queue);
  std::promise<std::pair<std::int64_t, std::thread::id>> told;
  socket->writeData("hello", [&told](const auto& error, std::int64_t count) {
    EXPECT_FALSE(error);
    told.set_value({count, std::this_thread::get_id()});
  });
  EXPECT_EQ("hello", peer.receive(5));
  const auto [count, thread] = told.get_future().get();
  EXPECT_EQ(5, count);
  EXPECT_NE(std::this_thread::get_id(), thread);
}

TEST(Asynchronous, WriteGivesTheError) {
  const auto queue = std::make_shared<HeldQueue>();
  const auto socket = GDUnixSocket::initWithSocketPath("(dummy)", 256, queue);
  std::optional<Error> told;
  socket->writeData("hello", [&told](const auto& error, std::int64_t count) {
    EXPECT_EQ(-1, count);
    told = error;
  });
  EXPECT_FALSE(told) << "nothing happens before the task runs";
  queue->take().task();
  EXPECT_EQ(Error::gduds_errorForCode(-3024), told);
}

TEST(Asynchronous, CompletionsMayBeEmpty) {
  const auto queue = std::make_shared<HeldQueue>();
  const auto [socket, peer] = makePair(256, queue);
  peer.send("x");
  socket->readWithCompletion({});
  socket->writeData("y", GDUnixSocket::WriteCompletion());
  queue->take().task();
  queue->take().task();
  EXPECT_EQ("y", peer.receive(1));
}

TEST(Asynchronous, TheTaskKeepsTheObjectAlive) {
  const auto queue = std::make_shared<HeldQueue>();
  auto [socket, peer] = makePair(256, queue);
  const std::weak_ptr<GDUnixSocket> weak = socket;
  socket->writeData(std::string("kept"), GDUnixSocket::WriteCompletion());
  socket.reset();
  EXPECT_FALSE(weak.expired());
  queue->take().task();
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ("kept", peer.receiveToTheEnd());
}

TEST(Asynchronous, ACloseEndsAReadOfAnotherThread) {
  const auto pair = makePair();
  const auto& socket = pair.socket;
  std::promise<int> reader;
  auto read = std::async(std::launch::async, [&] {
    reader.set_value(threadNumber());
    std::optional<Error> error;
    return socket->readWithError(&error);
  });
  const int thread = reader.get_future().get();
  ASSERT_TRUE(eventually([thread] { return isAsleepOrGone(thread); }));
  EXPECT_TRUE(socket->closeWithError());
  EXPECT_FALSE(read.get());
  EXPECT_EQ(-1, socket->fd());
}

TEST(Asynchronous, ACloseEndsAWriteOfAnotherThread) {
  const auto pair = makePair();
  const auto& socket = pair.socket;
  std::promise<int> writer;
  auto write = std::async(std::launch::async, [&] {
    writer.set_value(threadNumber());
    return socket->writeData(std::string(8 << 20, 'x'));
  });
  const int thread = writer.get_future().get();
  ASSERT_TRUE(eventually([thread] { return isAsleepOrGone(thread); }));
  EXPECT_TRUE(socket->closeWithError());
  EXPECT_LT(write.get(), 8 << 20);
}

TEST(Asynchronous, AFileThatIsNotASocketIsClosedWhenItsReadReturns) {
  int ends[2] = {-1, -1};
  ASSERT_EQ(0, ::pipe(ends));
  const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
  socket->setFd(ends[0]);
  std::promise<int> reader;
  auto read = std::async(std::launch::async, [&] {
    reader.set_value(threadNumber());
    return socket->readWithError();
  });
  const int thread = reader.get_future().get();
  ASSERT_TRUE(eventually([thread] { return isAsleepOrGone(thread); }));
  auto closed = std::async(std::launch::async, [&socket] { return socket->closeWithError(); });
  ASSERT_TRUE(eventually([&socket] { return socket->fd() == -1; }));
  ASSERT_EQ(4, ::write(ends[1], "last", 4));
  EXPECT_EQ("last", read.get());
  EXPECT_TRUE(closed.get());
  ::close(ends[1]);
}

TEST(Asynchronous, ClosesFromManyThreadsAllSucceedAndCloseOnce) {
  for (int round = 0; round < 200; ++round) {
    const auto pair = makePair();
    const auto& socket = pair.socket;
    std::vector<std::future<bool>> closes;
    for (int i = 0; i < 4; ++i) {
      closes.push_back(
          std::async(std::launch::async, [&socket] { return socket->closeWithError(); }));
    }
    for (auto& close : closes) EXPECT_TRUE(close.get());
  }
}

TEST(Asynchronous, AllThreadsSeeTheSameIdentifier) {
  for (int round = 0; round < 200; ++round) {
    const auto socket = GDUnixSocket::initWithSocketPath("(dummy)");
    auto other = std::async(std::launch::async, [&] { return socket->uniqueID(); });
    EXPECT_EQ(socket->uniqueID(), other.get());
  }
}

}  // namespace
}  // namespace seldial::tests
