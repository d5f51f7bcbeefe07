// listen and close from several threads, in callbacks, and during an accept or a send.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <future>
#include <set>
#include <thread>
#include <utility>

#include "tests/unixsocket/ListeningServer.h"
#include "tests/unixsocket/SystemCalls.h"

namespace seldial::tests {
namespace {

/// Runs both at the same time.
void together(const std::function<void()>& one, const std::function<void()>& other) {
  std::promise<void> go;
  const auto gone = go.get_future().share();
  std::thread thread([&] {
    gone.wait();
    other();
  });
  go.set_value();
  one();
  thread.join();
}

class Lifecycle : public ListeningServer {
 protected:
  /// Expects the result of whichever call came last: a working server, or nothing left behind.
  void expectServingOrGone() {
    const bool listening = server->state() == GDUnixSocketStateListening;
    EXPECT_EQ(listening, server->fd() != -1);
    EXPECT_EQ(listening, exists(path));
    EXPECT_EQ(listening, Peer::connectedTo(path).connected());
  }

  SystemCalls calls;
};

TEST_F(Lifecycle, AConcurrentListenIsBeforeOrAfterAClose) {
  for (int round = 0; round < 500; ++round) {
    listen();
    std::optional<Error> listenError;
    std::optional<Error> closeError;
    together([&] { EXPECT_TRUE(server->listenWithError(&listenError)); },
             [&] { EXPECT_TRUE(server->closeWithError(&closeError)); });
    EXPECT_FALSE(listenError) << listenError->localizedDescription;
    EXPECT_FALSE(closeError) << closeError->localizedDescription;
    expectServingOrGone();
    EXPECT_TRUE(server->closeWithError());
    EXPECT_FALSE(exists(path));
    if (HasFailure()) return;
  }
  EXPECT_EQ(1000U, delegate->journal.count("listening"));
  EXPECT_EQ(1000U, delegate->journal.count("close"));
}

TEST_F(Lifecycle, TwoListensAtOnceBothSucceedAndTheServerServes) {
  for (int round = 0; round < 500; ++round) {
    const auto listenNow = [this] { EXPECT_TRUE(server->listenWithError()); };
    together(listenNow, listenNow);
    EXPECT_EQ(3U, server->state());
    connect();
    EXPECT_TRUE(server->closeWithError());
    if (HasFailure()) return;
  }
}

TEST_F(Lifecycle, TwoClosesAtOnceBothSucceed) {
  for (int round = 0; round < 500; ++round) {
    listen();
    const auto closeNow = [this] { EXPECT_TRUE(server->closeWithError()); };
    together(closeNow, closeNow);
    EXPECT_FALSE(exists(path));
  }
}

TEST_F(Lifecycle, AConcurrentFailedListenDoesNotAffectAListen) {
  for (int round = 0; round < 200; ++round) {
    SystemCalls::set(failing("listen", EOPNOTSUPP, 0, 1));
    std::atomic<int> succeeded{0};
    const auto listenNow = [&] { succeeded += server->listenWithError() ? 1 : 0; };
    together(listenNow, listenNow);
    EXPECT_EQ(1, succeeded);
    SystemCalls::set({});
    if (server->state() == GDUnixSocketStateListening) connect();
    expectServingOrGone();
    server->closeSilently();
    if (HasFailure()) return;
  }
}

TEST_F(Lifecycle, AFailedAcceptLeavesALaterListeningAlone) {
  std::promise<void> listensAgain;
  delegate->onAcceptFailed = [&](GDUnixSocketServer& it) {
    // The failed accept has been reported, but its listening socket is not closed yet.
    EXPECT_TRUE(std::async(std::launch::async, [&] { return it.listenWithError(); }).get());
    listensAgain.set_value();
  };
  SystemCalls::set(failing("accept", EMFILE, 0, 1));
  listen();
  listensAgain.get_future().wait();
  const Peer peer = connect();
  EXPECT_TRUE(eventually([this] { return queue->pending() == 2; })) << "the loop and the reader";
  EXPECT_EQ(3U, server->state());
  EXPECT_TRUE(exists(path));
  EXPECT_EQ(0U, delegate->journal.count("close"));
  peer.send("x");
  EXPECT_TRUE(delegate->journal.waitFor("data 1"));
}

TEST_F(Lifecycle, AConnectionOfAnEarlierListeningIsNotTakenOverByALaterOne) {
  bool first = true;
  queue->start = [&,
                  this](auto task) {  // on the accept thread, before the table has the connection
    if (std::exchange(first, false)) {
      EXPECT_TRUE(server->closeWithError());
      EXPECT_TRUE(server->listenWithError());
    }
    queue->run(std::move(task));
  };
  listen();
  const Peer early = Peer::connectedTo(path);
  early.send("early");
  EXPECT_EQ("", early.receiveToTheEnd());
  const Peer later = connect();
  EXPECT_EQ(1U, server->connectedClients().size());
  later.send("later");
  EXPECT_TRUE(delegate->journal.waitFor("data 5"));
  EXPECT_EQ("later", delegate->received());
  EXPECT_EQ(1U, delegate->journal.count("accept"));
}

TEST_F(Lifecycle, ListeningAgainClosesTheConnectionsOfBefore) {
  listen();
  const Peer early = connect();
  listen();
  EXPECT_EQ("", early.receiveToTheEnd());
  EXPECT_TRUE(server->connectedClients().empty());
  EXPECT_EQ(0U, delegate->journal.count("disconnect"));
}

TEST_F(Lifecycle, ACloseEndsTheReadsOfAllConnectionsBeforeItWaitsForOne) {
  std::atomic<int> reads = 0;
  calls.set([&reads](const SystemCall& call) {
    if (call.name == "read") ++reads;
    return std::optional<int>();
  });
  listen();
  const Peer peers[] = {connect(), connect(), connect()};
  ASSERT_TRUE(eventually([&reads] { return reads == 3; }));
  std::set<int> shutDown;
  bool closedOne = false;
  calls.set({}, [&, closing = std::this_thread::get_id()](const SystemCall& call) {
    if (std::this_thread::get_id() != closing) return;
    if (call.name == "close") closedOne = true;
    if (call.name == "shutdown" && !closedOne) shutDown.insert(call.descriptor);
  });
  server->close();
  calls.set({});
  EXPECT_EQ(shutDown.size(), 3U);
}

TEST_F(Lifecycle, TheListeningCallbackMayCloseOnAnyThread) {
  delegate->onListening = [](GDUnixSocketServer& it) {
    EXPECT_TRUE(std::async(std::launch::async, [&it] { return it.closeWithError(); }).get());
    EXPECT_TRUE(it.closeWithError());
  };
  listen();
  EXPECT_EQ(-1, server->fd());
  EXPECT_FALSE(exists(path));
}

TEST_F(Lifecycle, TheCloseCallbackMayListenOnAnyThread) {
  listen();
  delegate->onClose = [](GDUnixSocketServer& it) {
    EXPECT_TRUE(std::async(std::launch::async, [&it] { return it.listenWithError(); }).get());
    EXPECT_TRUE(it.listenWithError());
    EXPECT_TRUE(it.connectedClients().empty());
    EXPECT_EQ(-1, it.sendData("x", "nobody"));
  };
  EXPECT_TRUE(server->closeWithError());
  connect();
  delegate->onClose = {};
}

TEST_F(Lifecycle, AListenInTheCloseCallbackThatFailsDoesNotBlock) {
  listen();
  delegate->onClose = [](GDUnixSocketServer& it) {
    SystemCalls::set(failing("bind", EACCES));
    EXPECT_FALSE(it.listenWithError());
  };
  EXPECT_TRUE(server->closeWithError());
  EXPECT_EQ(-1, server->fd());
  delegate->onClose = {};
}

TEST_F(Lifecycle, ADestroyedServerThatListensInItsCloseCallbackLeavesNothing) {
  auto held = std::make_shared<tests::ManualBackgroundQueue>();
  auto other = GDUnixSocketServer::initWithSocketPath(path, 256, held);
  other->setDelegate(delegate);
  const std::size_t before = openDescriptors();
  ASSERT_TRUE(other->listenWithError());
  delegate->onClose = [](GDUnixSocketServer& it) { EXPECT_TRUE(it.listenWithError()); };
  other.reset();
  EXPECT_EQ(before, openDescriptors());
  EXPECT_FALSE(exists(path));
  delegate->onClose = {};
}

TEST_F(Lifecycle, ItsIdentifierNeverWaitsForASend) {
  listen();
  const Peer peer = connect();
  std::promise<int> sender;
  auto sent = std::async(std::launch::async, [&] {
    sender.set_value(threadNumber());
    return server->sendData(std::string(8 << 20, 'x'), lastClientID());
  });
  const int thread = sender.get_future().get();
  ASSERT_TRUE(eventually([thread] { return isAsleepOrGone(thread); }));
  EXPECT_EQ(server->description(), server->uniqueID());
  EXPECT_EQ(server->debugDescription(), server->uniqueID());
  EXPECT_EQ(std::future_status::timeout, sent.wait_for(std::chrono::seconds(0)));
  EXPECT_EQ(8U << 20U, peer.receive(8 << 20).size());
  EXPECT_EQ(8 << 20, sent.get());
}

TEST_F(Lifecycle, TheFileOfASecondServerAtThePathIsLeftAlone) {
  listen();
  const auto second = serverAt(path);
  ASSERT_TRUE(second->listenWithError());
  EXPECT_FALSE(server->pathWasTakenOver()) << "nobody has looked yet";
  EXPECT_TRUE(server->closeWithError());
  EXPECT_TRUE(server->pathWasTakenOver());
  EXPECT_EQ(-1, server->fd());
  EXPECT_TRUE(server->closeWithError());
  EXPECT_TRUE(Peer::connectedTo(path).connected());
  EXPECT_TRUE(second->closeWithError());
  EXPECT_FALSE(second->pathWasTakenOver());
  EXPECT_FALSE(exists(path));
  listen();
  EXPECT_FALSE(server->pathWasTakenOver());
}

TEST_F(Lifecycle, AnyOtherFileThatReplacedItsOwnIsLeftAlone) {
  listen();
  const std::string moved = directory.path("moved");
  ASSERT_EQ(0, ::rename(path.c_str(), moved.c_str()));
  { const Peer other = Peer::listeningAt(path); }
  EXPECT_TRUE(server->closeWithError());
  EXPECT_TRUE(server->pathWasTakenOver());
  EXPECT_TRUE(exists(path));
  EXPECT_TRUE(exists(moved));
}

TEST_F(Lifecycle, AMissingFileIsNotATakeover) {
  listen();
  ASSERT_EQ(0, ::unlink(path.c_str()));
  EXPECT_TRUE(server->closeWithError());
  EXPECT_FALSE(server->pathWasTakenOver());
}

TEST_F(Lifecycle, ClosingAgainLeavesTheFileOfALaterServerAlone) {
  listen();
  EXPECT_TRUE(server->closeWithError());
  const auto second = serverAt(path);
  ASSERT_TRUE(second->listenWithError());
  EXPECT_TRUE(server->closeWithError());
  EXPECT_TRUE(exists(path));
  second->closeSilently();
}

TEST_F(Lifecycle, AFailedListenLeavesTheFileOfAFasterServerAlone) {
  std::optional<Peer> faster;
  bool first = true;
  SystemCalls::set([&](const SystemCall& call) {
    if (call.name == "bind" && std::exchange(first, false)) {
      faster.emplace(Peer::listeningAt(path));
    }
    return std::optional<int>();
  });
  std::optional<Error> error;
  EXPECT_FALSE(server->listenWithError(&error));
  EXPECT_EQ(-3023, error->code);
  EXPECT_EQ(EADDRINUSE, error->errorNumber);
  EXPECT_EQ(-1, server->fd());
  EXPECT_TRUE(Peer::connectedTo(path).connected());
}

}  // namespace
}  // namespace seldial::tests
