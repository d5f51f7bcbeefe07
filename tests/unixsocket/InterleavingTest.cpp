// One connection, from its accept to its end, in every possible interleaving of the accept thread,
// its reader, its client and a close.
//
// The accept thread passes the moments below. At each point, a plan says who acts: the reader's
// task is started, the client sends or disconnects, or the server is closed. The thread that passes
// a point waits there until those actions are done, or blocked on that thread.
#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <future>
#include <optional>
#include <thread>

#include "tests/support/BackgroundQueueDoubles.h"
#include "tests/unixsocket/ListeningServer.h"
#include "tests/unixsocket/Support.h"
#include "tests/unixsocket/SystemCalls.h"

namespace seldial::tests {
namespace {

enum Point : unsigned {
  // of the accept thread
  kConnected,  ///< the client is connected, and waits to be accepted
  kAccepted,
  kReaderPosted,  ///< the reader's task was passed to the queue, which has not returned
  kBeforeTable,
  kAcceptCallback,     ///< in the accept callback
  kAcceptCallbackEnd,  ///< at the end of the accept callback, after something was sent to the
                       ///< connection
  kNextAccept,
  kLater,  ///< the accept thread has nothing to do
  // of the reader
  kBeforeRead,
  kAfterRead,
  kDataCallback,
  kDisconnectCallback,
  kPoints
};

/// Whether a close that begins at that point ends before the reader may read.
bool precedesReader(Point point) {
  return point <= kAcceptCallbackEnd && point != kBeforeTable;  // where the table is locked
}

/// Whether such a close waits for the thread that passes the point.
bool isInsideAccept(Point point) {
  return point == kAccepted;
}

struct Plan {
  Point readerStarts;
  Point clientSends;
  Point clientLeaves;
  std::optional<Point> closes;
};

/// A thread whose progress can be waited for.
class ObservedThread {
 public:
  ~ObservedThread() {
    if (thread_.joinable()) thread_.join();
  }

  /// Runs `action` on a separate thread, or with `runner`; returns when it has ended or is blocked.
  void runUntilBlocked(std::function<void()> action,
                       const std::function<void(std::function<void()>)>& runner = {}) {
    auto run = [this, action = std::move(action)] {
      number_ = threadNumber();
      action();
      ended_ = true;
    };
    if (runner) {
      runner(run);
    } else {
      thread_ = std::thread(run);
    }
    EXPECT_TRUE(eventually([this] { return ended_ || (number_ != 0 && isAsleepOrGone(number_)); }));
  }

  void waitForEnd() const {
    EXPECT_TRUE(eventually([this] { return ended_.load(); }));
  }

 private:
  std::thread thread_;
  std::atomic<int> number_{0};
  std::atomic<bool> ended_{false};
};

/// Executes one plan.
class PlanExecution {
 public:
  explicit PlanExecution(const Plan& plan) : plan_(plan) {
    queue_->start = [this](auto task) {
      readerTask_ = std::move(task);
      pass(kReaderPosted);
    };
    SystemCalls::set([this](const SystemCall& call) { return beforeCall(call); },
                     [this](const SystemCall& call) { afterCall(call); });
    delegate_->onAccept = [this](GDUnixSocketServer& server, const std::string& clientID) {
      pass(kAcceptCallback);
      welcomed_ = server.sendData("welcome", clientID) == 7;
      pass(kAcceptCallbackEnd);
    };
    delegate_->onData = [this](auto&, auto&) { pass(kDataCallback); };
    delegate_->onDisconnect = [this](auto&, auto&) { pass(kDisconnectCallback); };
    server_->setDelegate(delegate_);
  }

  void play() {
    ASSERT_TRUE(server_->listenWithError());
    client_.emplace(Peer::connectedTo(path_));
    pass(kConnected);
    mayAccept_.set_value();
    ASSERT_TRUE(delegate_->journal.waitFor("accept"));
    ASSERT_TRUE(eventually([this] { return passed_[kNextAccept] || server_->fd() == -1; }));
    pass(kNextAccept);  // the accept thread does not get there if the server is closed before
    pass(kLater);
    ASSERT_TRUE(delegate_->journal.waitFor(plan_.closes ? "close" : "disconnect"));
    EXPECT_TRUE(eventually([this] { return server_->connectedClients().empty(); }));
    server_->closeSilently();
    queue_->waitUntilIdle();
  }

  [[nodiscard]] std::vector<std::string> lines() const { return delegate_->journal.lines(); }

 private:
  /// The first thread that passes a point performs the actions; other threads wait for them.
  void pass(Point point) {
    if (passed_[point].exchange(true)) {
      EXPECT_TRUE(eventually([&] { return done_[point].load(); }));
      return;
    }
    if (plan_.readerStarts == point) {
      reader_.runUntilBlocked(std::move(readerTask_),
                              [this](auto task) { queue_->run(std::move(task)); });
    }
    if (plan_.clientSends == point) client_->send(std::string(600, 'x'));
    if (plan_.clientLeaves == point) leave();
    if (plan_.closes == point) {
      closer_.runUntilBlocked([this] { server_->close(); });
      if (precedesReader(point) && !isInsideAccept(point)) closer_.waitForEnd();
    }
    done_[point] = true;
  }

  /// Disconnecting with unread bytes would reset the connection.
  void leave() {
    EXPECT_EQ(welcomed_ ? "welcome" : "", client_->receive(welcomed_ ? 7 : 0));
    client_->leave();
  }

  std::optional<int> beforeCall(const SystemCall& call) {
    if (call.name == "accept") {
      if (acceptCalls_++ == 0) {
        mayAccept_.get_future().wait();
      } else {
        pass(kNextAccept);
      }
    }
    if (call.name == "getentropy") pass(kBeforeTable);
    if (call.name == "read") pass(kBeforeRead);
    return {};
  }

  void afterCall(const SystemCall& call) {
    if (call.name == "accept") pass(kAccepted);
    if (call.name == "read") pass(kAfterRead);
  }

  const Plan plan_;
  const std::shared_ptr<tests::ControlledBackgroundQueue> queue_ =
      std::make_shared<tests::ControlledBackgroundQueue>();
  TemporaryDirectory directory_;
  const std::string path_ = directory_.path("socket");
  const std::shared_ptr<RecordingServerDelegate> delegate_ =
      std::make_shared<RecordingServerDelegate>();
  const std::shared_ptr<GDUnixSocketServer> server_ =
      GDUnixSocketServer::initWithSocketPath(path_, 256, queue_);
  std::optional<Peer> client_;
  std::atomic<bool> welcomed_{false};
  std::promise<void> mayAccept_;
  std::array<std::atomic<bool>, kPoints> passed_{};
  std::array<std::atomic<bool>, kPoints> done_{};
  std::atomic<int> acceptCalls_{0};
  std::function<void()> readerTask_;
  ObservedThread reader_;
  ObservedThread closer_;
  SystemCalls calls_;
};

std::string nameOf(const Plan& plan) {
  return "reader starts at " + std::to_string(plan.readerStarts) + ", client sends at " +
         std::to_string(plan.clientSends) + " and leaves at " + std::to_string(plan.clientLeaves) +
         ", server closed at " + (plan.closes ? std::to_string(*plan.closes) : "no point");
}

/// Checks the callbacks after a close in between: a prefix of the complete sequence, with the close
/// anywhere after the listen.
void expectPrefix(std::vector<std::string> lines, bool withoutTheReaders) {
  const std::vector<std::string> story = {"listening", "accept",  "data 256",
                                          "data 256",  "data 88", "disconnect"};
  EXPECT_EQ(1, std::erase(lines, "close"));
  ASSERT_GE(lines.size(), 2U);
  ASSERT_LE(lines.size(), withoutTheReaders ? 2U : story.size());
  for (std::size_t i = 0; i < lines.size(); ++i) EXPECT_EQ(story[i], lines[i]);
}

void play(const Plan& plan) {
  SCOPED_TRACE(nameOf(plan));
  const std::size_t descriptors = openDescriptors();
  {
    PlanExecution execution(plan);
    execution.play();
    if (plan.closes) {
      expectPrefix(execution.lines(), precedesReader(*plan.closes));
    } else {
      const std::vector<std::string> story = {"listening", "accept",  "data 256",
                                              "data 256",  "data 88", "disconnect"};
      EXPECT_EQ(story, execution.lines());
    }
  }
  EXPECT_EQ(descriptors, openDescriptors());
}

void runPlans(Point readerStarts, std::optional<Point> closes) {
  for (unsigned sends = kConnected; sends <= kLater; ++sends) {
    for (unsigned leaves = sends; leaves <= kLater; ++leaves) {
      play({readerStarts, static_cast<Point>(sends), static_cast<Point>(leaves), closes});
      if (testing::Test::HasFailure()) return;  // the first failing order is enough
    }
  }
}

using InterleavingWithAClose = ListeningServer;

TEST_F(InterleavingWithAClose, AConnectionThatIsAcceptedInTheMiddleOfItIsClosedToo) {
  std::optional<Peer> late;
  std::atomic<int> looks{0};
  listen();
  connect();
  SystemCalls calls;
  // The close looks for the socket file after it has removed all connections.
  SystemCalls::set([&](const SystemCall& call) {
    if (call.name == "stat" && looks++ == 0) late.emplace(connect());
    return std::optional<int>();
  });
  server->close();
  ASSERT_TRUE(late);
  EXPECT_EQ("", late->receiveToTheEnd());
  queue->waitUntilIdle();
  EXPECT_TRUE(server->connectedClients().empty());
  EXPECT_EQ(2U, delegate->journal.count("accept"));
}

class Interleaving : public testing::TestWithParam<Point> {};

TEST_P(Interleaving, NothingIsLostAndNothingOvertakesTheAccept) {
  runPlans(GetParam(), {});
}

TEST_P(Interleaving, ACloseAtAnyMomentEndsItSilently) {
  for (unsigned closes = kAccepted; closes < kPoints; ++closes) {
    runPlans(GetParam(), static_cast<Point>(closes));
    if (HasFailure()) return;
  }
}

std::string nameOfParameter(const testing::TestParamInfo<Point>& parameter) {
  switch (parameter.param) {
    case kReaderPosted:
      return "WhenPosted";
    case kBeforeTable:
      return "BeforeTheTable";
    case kAcceptCallback:
      return "InTheAcceptCallback";
    case kAcceptCallbackEnd:
      return "AtItsEnd";
    case kNextAccept:
      return "AtTheNextAccept";
    default:
      return "Later";
  }
}

INSTANTIATE_TEST_SUITE_P(ReaderStarts, Interleaving,
                         testing::Values(kReaderPosted, kBeforeTable, kAcceptCallback,
                                         kAcceptCallbackEnd, kNextAccept, kLater),
                         nameOfParameter);

}  // namespace
}  // namespace seldial::tests
