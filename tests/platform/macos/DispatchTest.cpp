// The queues and the termination signals on Dispatch.
#include <csignal>
#include <cstddef>
#include <iterator>
#include <memory>

#include "platform/BackgroundQueue.h"
#include "platform/macos/Desktop.h"
#include "tests/platform/macos/AppleTest.h"

namespace seldial::platform::macos {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using tests::apple;

using MacMainQueue = tests::AppleTest;

TEST_F(MacMainQueue, UsesTheMainQueueOfDispatchAndRunsEachTaskOnce) {
  DispatchMainQueue queue;
  std::vector<int> ran;
  queue.async([&ran] { ran.push_back(1); });
  queue.async([&ran] { ran.push_back(2); });
  EXPECT_THAT(apple().calls,
              ElementsAre("dispatch_async_f main queue", "dispatch_async_f main queue"));
  EXPECT_THAT(ran, IsEmpty());
  for (const auto& task : apple().submitted) task.run();
  EXPECT_THAT(ran, ElementsAre(1, 2));
}

TEST_F(MacMainQueue, DestroysATaskAfterItHasRun) {
  const auto held = std::make_shared<int>();
  DispatchMainQueue().async([held] {});
  EXPECT_EQ(held.use_count(), 2);
  apple().submitted.at(0).run();
  EXPECT_EQ(held.use_count(), 1);
}

TEST_F(MacMainQueue, KnowsTheMainThread) {
  const DispatchMainQueue queue;
  EXPECT_TRUE(queue.isMainThread());
  apple().onMainThread = false;
  EXPECT_FALSE(queue.isMainThread());
}

struct MacBackgroundQueue : tests::AppleTest {
  const std::shared_ptr<BackgroundQueue> queue = sharedBackgroundQueue();
};

TEST_F(MacBackgroundQueue, GivesEachTaskASerialQueueAndReleasesIt) {
  int ran = 0;
  queue->async([&ran] { ++ran; });
  queue->async([&ran] { ++ran; });
  EXPECT_THAT(apple().calls, ElementsAre("dispatch_queue_create org.seldial.background serial",
                                         "dispatch_async_f queue 1", "dispatch_release queue 1",
                                         "dispatch_queue_create org.seldial.background serial",
                                         "dispatch_async_f queue 2", "dispatch_release queue 2"));
  for (const auto& task : apple().submitted) task.run();
  EXPECT_EQ(ran, 2);
}

TEST_F(MacBackgroundQueue, DelaysATask) {
  int ran = 0;
  queue->after(std::chrono::milliseconds(1), [&ran] { ++ran; });
  EXPECT_THAT(
      apple().calls,
      ElementsAre("dispatch_queue_create org.seldial.background serial", "dispatch_time 0 1000000",
                  "dispatch_after_f 1000001 queue 1", "dispatch_release queue 1"));
  apple().submitted.at(0).run();
  EXPECT_EQ(ran, 1);
}

/// Restores the actions of the termination signals.
struct MacTerminationSignals : tests::AppleTest {
  MacTerminationSignals() {
    for (std::size_t i = 0; i < 3; ++i) {
      sigaction(kSignals[i], nullptr, &before[i]);
      std::signal(kSignals[i], SIG_DFL);
    }
  }
  ~MacTerminationSignals() override {
    for (std::size_t i = 0; i < 3; ++i) sigaction(kSignals[i], &before[i], nullptr);
    apple().living.clear();  // the sources stay for the rest of the process
  }

  static bool isIgnored(int signal) {
    struct sigaction action {};
    sigaction(signal, nullptr, &action);
    return action.sa_handler == SIG_IGN;
  }

  /// A signal arrives at one of the sources.
  static void signal(std::ptrdiff_t number) {
    const auto& source = std::next(apple().sources.begin(), number)->second;
    source.handler(source.context);
  }

  /// Runs the submitted work with that index.
  static void run(std::size_t place) { apple().submitted.at(place).run(); }

  static constexpr int kSignals[] = {SIGTERM, SIGINT, SIGHUP};
  struct sigaction before[3];
};

TEST_F(MacTerminationSignals, TheFirstEndsTheApplicationOnTheMainQueueAndLaterInterruptsIt) {
  int received = 0;
  int interrupted = 0;
  onTerminationSignals([&received] { ++received; }, [&interrupted] { ++interrupted; });
  signal(0);
  ASSERT_THAT(apple().submitted, SizeIs(3));
  EXPECT_EQ(apple().submitted[0].queue, dispatch_get_main_queue());
  run(0);
  EXPECT_EQ(received, 1);
  EXPECT_EQ(apple().submitted[1].when, 1000000001U);
  run(1);
  EXPECT_EQ(interrupted, 1);
  EXPECT_EQ(apple().submitted[2].when, 1500000001U);
  EXPECT_EXIT(run(2), testing::ExitedWithCode(0), "");
}

TEST_F(MacTerminationSignals, ASecondInterruptsAtOnceAndAThirdEndsTheProcess) {
  int received = 0;
  int interrupted = 0;
  onTerminationSignals([&received] { ++received; }, [&interrupted] { ++interrupted; });
  signal(0);
  signal(1);
  EXPECT_EQ(interrupted, 1);
  run(1);  // the work that the first signal has scheduled
  EXPECT_EQ(interrupted, 1);
  EXPECT_EQ(apple().submitted[3].when, 200000001U);
  EXPECT_EXIT(signal(2), testing::ExitedWithCode(0), "");
}

TEST_F(MacTerminationSignals, AreWatchedApartFromTheMainQueue) {
  onTerminationSignals([] {}, [] {});
  EXPECT_THAT(apple().sources, SizeIs(3));
  for (const auto& [object, source] : apple().sources) {
    EXPECT_EQ(source.type, DISPATCH_SOURCE_TYPE_SIGNAL);
    EXPECT_NE(source.queue, dispatch_get_main_queue());
    EXPECT_TRUE(source.resumed);
  }
}

TEST_F(MacTerminationSignals, DoNotEndTheProcessByThemselves) {
  onTerminationSignals([] {}, [] {});
  for (const int signal : kSignals) EXPECT_TRUE(isIgnored(signal)) << signal;
}

TEST_F(MacTerminationSignals, LeaveAnIgnoredHangUpAlone) {
  std::signal(SIGHUP, SIG_IGN);
  onTerminationSignals([] {}, [] {});
  EXPECT_THAT(apple().sources, SizeIs(2));
  for (const auto& [object, source] : apple().sources) EXPECT_NE(source.handle, SIGHUP);
}

}  // namespace
}  // namespace seldial::platform::macos
