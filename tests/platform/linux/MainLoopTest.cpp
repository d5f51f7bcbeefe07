#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <memory>

#include "platform/linux/MainLoop.h"

namespace seldial::platform::linux_port {
namespace {

using testing::ElementsAre;

/// The read end of a pipe. Counts the notifications and, if requested, reads.
class PipeSource final : public EventSource {
 public:
  PipeSource() { EXPECT_EQ(pipe(ends_), 0); }
  ~PipeSource() override {
    close(ends_[0]);
    closeWriter();
  }
  PipeSource(const PipeSource&) = delete;
  PipeSource& operator=(const PipeSource&) = delete;

  [[nodiscard]] int descriptor() const override { return ends_[0]; }
  void readable() override {
    consume();
    onReadable();
  }
  void willWait() override { ++waits; }
  bool readableWhileBlocked() override {
    ++blockedCalls;
    if (!servesWhileBlocked) return false;
    consume();
    return true;
  }

  void fill() const { EXPECT_EQ(write(ends_[1], "x", 1), 1); }
  void closeWriter() {
    if (ends_[1] != -1) close(std::exchange(ends_[1], -1));
  }

  std::function<void()> onReadable = [] {};
  bool servesWhileBlocked = false;
  int waits = 0;
  int blockedCalls = 0;

 private:
  void consume() const {
    char byte = 0;
    (void)!read(ends_[0], &byte, 1);
  }

  int ends_[2] = {-1, -1};
};

TEST(MainLoop, RunsTasksInTheOrderInWhichTheyWerePosted) {
  MainLoop loop;
  std::vector<int> order;
  for (int i = 0; i < 3; ++i) loop.async([&order, i] { order.push_back(i); });
  loop.async([&loop] { loop.quit(); });
  loop.run();
  EXPECT_THAT(order, ElementsAre(0, 1, 2));
}

TEST(MainLoop, ATaskPostedByATaskRunsAfterThoseThatWait) {
  MainLoop loop;
  std::vector<int> order;
  loop.async([&] {
    order.push_back(1);
    loop.async([&] {
      order.push_back(3);
      loop.quit();
    });
  });
  loop.async([&order] { order.push_back(2); });
  loop.run();
  EXPECT_THAT(order, ElementsAre(1, 2, 3));
}

TEST(MainLoop, EachThreadsTasksKeepTheirOrderAndNoneIsLost) {
  constexpr int kThreads = 8;
  constexpr int kTasks = 5000;
  MainLoop loop;
  std::vector<int> next(kThreads, 0);
  int left = kThreads * kTasks;
  std::vector<std::thread> threads;
  for (std::size_t thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([&loop, &next, &left, thread] {
      for (int task = 0; task < kTasks; ++task) {
        loop.async([&loop, &next, &left, thread, task] {
          EXPECT_EQ(next[thread]++, task);
          if (--left == 0) loop.quit();
        });
      }
    });
  }
  loop.run();
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(left, 0);
}

TEST(MainLoop, ATaskWithoutAWakeUpRunsBeforeTheNextTask) {
  MainLoop loop;
  std::vector<int> order;
  std::thread poster([&] {
    loop.asyncBeforeNext([&order] { order.push_back(0); });
    loop.asyncBeforeNext([&order] { order.push_back(1); });
    loop.async([&] {
      order.push_back(2);
      loop.quit();
    });
  });
  loop.run();
  poster.join();
  EXPECT_THAT(order, ElementsAre(0, 1, 2));
}

TEST(MainLoop, ManyTasksWithoutAWakeUpDoNotPileUp) {
  MainLoop loop;
  int count = 0;
  std::thread poster([&] {
    for (int i = 0; i < 100; ++i) {
      loop.asyncBeforeNext([&] {
        if (++count == 50) loop.quit();
      });
    }
  });
  loop.run();  // nothing else ends it
  poster.join();
  EXPECT_EQ(count, 50);
}

TEST(MainLoop, ATaskWithoutAWakeUpDoesNotWakeTheLoopUp) {
  MainLoop loop;
  std::vector<int> order;
  // Served from another loop, which asks whether there is something to serve.
  loop.serve();
  loop.asyncBeforeNext([&order] { order.push_back(0); });
  pollfd watched{loop.descriptor(), POLLIN, 0};
  EXPECT_EQ(poll(&watched, 1, 0), 0);
  loop.async([&order] { order.push_back(1); });
  EXPECT_EQ(poll(&watched, 1, 0), 1);
  loop.serve();
  EXPECT_THAT(order, ElementsAre(0, 1));
}

TEST(MainLoop, KnowsItsThread) {
  const MainLoop loop;
  EXPECT_TRUE(loop.isMainThread());
  std::thread([&loop] { EXPECT_FALSE(loop.isMainThread()); }).join();
}

TEST(MainLoop, NothingRunsAfterQuit) {
  MainLoop loop;
  bool ran = false;
  loop.async([&loop] { loop.quit(); });
  loop.async([&ran] { ran = true; });
  loop.run();
  loop.run();
  EXPECT_FALSE(ran);
}

TEST(MainLoop, ATaskIsDestroyedBeforeTheNextOneRuns) {
  MainLoop loop;
  const auto held = std::make_shared<int>();
  const std::weak_ptr<int> weak = held;
  loop.async([moved = std::shared_ptr<int>(held)] {});
  loop.async([&weak, &loop] {
    EXPECT_EQ(weak.use_count(), 1);
    loop.quit();
  });
  loop.run();
}

TEST(MainLoop, AReadableSourceIsServedAndAskedBeforeEveryWait) {
  MainLoop loop;
  PipeSource source;
  source.onReadable = [&loop] { loop.quit(); };
  loop.watch(source);
  source.fill();
  loop.run();
  EXPECT_EQ(source.waits, 1);
}

TEST(MainLoop, ASourceThatIsNoLongerWatchedIsLeftAlone) {
  MainLoop loop;
  PipeSource source;
  source.onReadable = [] { FAIL(); };
  loop.watch(source);
  loop.unwatch(source);
  source.fill();
  loop.async([&loop] { loop.async([&loop] { loop.quit(); }); });
  loop.run();
  EXPECT_EQ(source.waits, 0);
}

/// Whether the loop needs to be served.
bool asks(const MainLoop& loop) {
  pollfd entry{loop.descriptor(), POLLIN, 0};
  return poll(&entry, 1, 0) == 1;
}

TEST(MainLoop, ServesEverythingThereIsAndReturns) {
  MainLoop loop;
  std::vector<int> order;
  PipeSource source;
  source.onReadable = [&] { loop.async([&order] { order.push_back(3); }); };
  loop.watch(source);
  source.fill();
  loop.async([&] {
    order.push_back(1);
    loop.async([&order] { order.push_back(2); });
  });
  loop.serve();
  EXPECT_THAT(order, ElementsAre(1, 2, 3));
  EXPECT_FALSE(asks(loop));
  EXPECT_GE(source.waits, 2) << "a source that was served may have kept something for its wait";
}

TEST(MainLoop, ServedFromAnotherLoopItAsksForEveryTask) {
  MainLoop loop;
  int ran = 0;
  const auto run = [&ran] { ++ran; };
  for (int round = 1; round <= 3; ++round) {
    loop.serve();
    EXPECT_FALSE(asks(loop));
    std::thread([&] { loop.async(run); }).join();
    EXPECT_TRUE(asks(loop)) << "of another thread, round " << round;
    loop.serve();
    EXPECT_FALSE(asks(loop));
    loop.async(run);
    EXPECT_TRUE(asks(loop)) << "of the main thread, round " << round;
    loop.serve();
    EXPECT_EQ(ran, 2 * round);
  }
}

TEST(MainLoop, ServedFromAnotherLoopItAsksForAReadableSource) {
  MainLoop loop;
  PipeSource source;
  int served = 0;
  source.onReadable = [&served] { ++served; };
  loop.watch(source);
  loop.serve();
  EXPECT_FALSE(asks(loop));
  source.fill();
  EXPECT_TRUE(asks(loop));
  loop.serve();
  EXPECT_EQ(served, 1);
  EXPECT_FALSE(asks(loop));
}

TEST(MainLoop, ServesNothingAfterQuit) {
  MainLoop loop;
  bool ran = false;
  loop.async([&] {
    loop.quit();
    loop.async([&ran] { ran = true; });
  });
  loop.serve();
  loop.serve();
  EXPECT_FALSE(ran);
}

TEST(MainLoop, BlockRunsNoTask) {
  MainLoop loop;
  bool ran = false;
  loop.async([&ran] { ran = true; });
  loop.block(std::chrono::milliseconds(20));
  EXPECT_FALSE(ran);
}

TEST(MainLoop, BlockLastsAsLongAsItSays) {
  MainLoop loop;
  const auto begin = std::chrono::steady_clock::now();
  loop.block(std::chrono::milliseconds(30));
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(30));
}

TEST(MainLoop, BlockServesTheSourcesThatWantIt) {
  MainLoop loop;
  PipeSource servedSource;
  PipeSource other;
  servedSource.servesWhileBlocked = true;
  for (auto* source : {&servedSource, &other}) {
    source->onReadable = [] { FAIL(); };
    loop.watch(*source);
    source->fill();
    source->fill();
  }
  loop.block(std::chrono::milliseconds(50));
  EXPECT_EQ(servedSource.blockedCalls, 2);
  EXPECT_EQ(other.blockedCalls, 1) << "once told that it is left out, it is";
}

TEST(MainLoop, ASourceThatHangsUpDoesNotEndABlockOrKeepItBusy) {
  MainLoop loop;
  PipeSource source;
  source.servesWhileBlocked = true;
  loop.watch(source);
  source.closeWriter();
  const auto begin = std::chrono::steady_clock::now();
  loop.block(std::chrono::milliseconds(30));
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(30));
  EXPECT_LE(source.blockedCalls, 1);
}

}  // namespace
}  // namespace seldial::platform::linux_port
